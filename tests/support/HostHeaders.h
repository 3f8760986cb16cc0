#pragma once

// Precompiled for the tests of the host: what nearly all of them read, and none of the program's own.

#include <QCoroTask>
#include <QString>
#include <array>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>
