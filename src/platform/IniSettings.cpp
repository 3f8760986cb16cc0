#include "platform/IniSettings.h"

#include <QCoreApplication>
#include <QSaveFile>
#include <QStringDecoder>
#include <QVariant>
#include <utility>

namespace marisonde {

namespace {

bool StandsForItself(unsigned char byte) {
    return (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') ||
           byte == '.' || byte == '-';
}

/// Signs like "/" and "%" would be structure to QSettings, which also cannot hold an empty name.
QString NameInFile(std::string_view name) {
    static constexpr char kHex[] = "0123456789ABCDEF";
    if (name.empty()) return QStringLiteral("_");
    QString text;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (StandsForItself(byte)) {
            text += QLatin1Char(c);
        } else {
            text += QLatin1Char('_');
            text += QLatin1Char(kHex[byte >> 4]);
            text += QLatin1Char(kHex[byte & 15]);
        }
    }
    return text;
}

QString FullName(std::string_view section, std::string_view key) {
    return NameInFile(section) + QLatin1Char('/') + NameInFile(key);
}

/// Text where the bytes are UTF-8, so that the file can be read by people, otherwise the bare bytes.
QVariant ValueInFile(std::string_view value) {
    const QByteArray bytes(value.data(), static_cast<qsizetype>(value.size()));
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    if (decoder.hasError() || text.toUtf8() != bytes) return bytes;
    return text;
}

std::string ValueFromFile(const QVariant& value) {
    // A comma that a person wrote without quotes makes a list of the value.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", ")).toStdString();
    return value.toByteArray().toStdString();
}

}  // namespace

IniSettings::IniSettings(const QString& path, OnProblem onProblem)
    : settings_(std::make_unique<QSettings>(path, QSettings::IniFormat)), onProblem_(std::move(onProblem)) {
    saveTimer_.setSingleShot(true);
    QObject::connect(&saveTimer_, &QTimer::timeout, &saveTimer_, [this] { Save(); });
}

IniSettings::~IniSettings() {
    Save();
}

std::string IniSettings::GetSetting(std::string_view section, std::string_view key,
                                    std::string_view missing) const {
    const QVariant value = settings_->value(FullName(section, key));
    return value.isValid() ? ValueFromFile(value) : std::string(missing);
}

void IniSettings::SaveSetting(std::string_view section, std::string_view key, std::string_view value) {
    settings_->setValue(FullName(section, key), ValueInFile(value));
    SaveSoon();
}

bool IniSettings::Save() {
    saveTimer_.stop();
    settings_->sync();
    if (settings_->status() != QSettings::AccessError) return true;
    if (!std::exchange(problemReported_, true) && onProblem_) onProblem_(WriteProblem());
    return false;
}

void IniSettings::SaveSoon() {
    // Many values are saved together at the end of a run; each write to the disk may take as long as a tick.
    if (!saveTimer_.isActive() && QCoreApplication::instance() != nullptr) saveTimer_.start(0);
}

std::string IniSettings::WriteProblem() const {
    // QSettings keeps the system's reason to itself; a second try that changes nothing finds it.
    QSaveFile probe(Path());
    const bool opens = probe.open(QIODevice::WriteOnly);
    const QString reason =
        opens ? QStringLiteral("writing failed, the disk may be full") : probe.errorString();
    return (Path() + QStringLiteral(": ") + reason).toStdString();
}

}  // namespace marisonde
