#pragma once

#include <QList>
#include <QRect>
#include <QString>
#include <string>
#include <string_view>

#include "common/Settings.h"

class QAction;
class QToolBar;
class QWidget;

namespace marisonde {

/// Text from the program's texts and from instruments: bytes are Latin-1 unless they are valid UTF-8.
QString FromText(const std::string& text);

/// Puts an action on a tool bar as a button of this name, with icon and text; its tip names its key. Buttons
/// are made in one way, so that they look and read alike.
void AddToolButton(QToolBar* bar, QAction* action, const char* name);

/// The Tab key goes through these in this order; of one that holds others, through those as they were made.
void OrderTabs(const QList<QWidget*>& order);

/// Whether the user can change the form's size.
bool IsSizable(const QWidget& form);
/// `wanted` moved, and cut where it must, so that it lies on one of the screens with its title bar of this
/// height.
QRect BroughtOntoScreen(QRect wanted, const QList<QRect>& screens, int titleHeight);
/// Gives the form this place and size, brought on to a screen of this computer.
void PlaceOnScreen(QWidget& form, QRect wanted);

/// Moves a form that has just been shown below the other dialogs of its window, so that each can be read.
void PlaceClearOfOthers(QWidget& form);

/// Keeps "Top", "Left", and for sizable forms "Width" and "Height", in pixels, in the section of that name.
/// Nothing is kept of a minimised form.
void SaveFormGeometry(Settings& settings, const QWidget& form, std::string_view section);
/// Puts the form where it was, on to the screen if need be. A missing value leaves that of `design`.
void RestoreFormGeometry(const Settings& settings, QWidget& form, std::string_view section, QRect design);
/// The same in a section named after the form, from the place that the form has now. A form of which nothing
/// is kept is not placed: a dialog then opens in the middle of its window.
void SaveFormGeometry(Settings& settings, const QWidget& form);
void RestoreFormGeometry(const Settings& settings, QWidget& form);

/// Geometry, then what the user has entered in the form's named controls: texts, choices, folders. The key is
/// the control's name, with its index behind it for the elements of an array.
void SaveControlValues(Settings& settings, const QWidget& form);
/// A missing value leaves the control as it is.
void RestoreControlValues(const Settings& settings, QWidget& form);

/// Gives each button, check box and option button a letter of its own, as far as the letters go: of two
/// controls with the same letter the second gets another, and those without one get the first that is free.
void FixControlAccelerators(QWidget& form);

}  // namespace marisonde
