#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QFileSystemModel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <array>
#include <optional>

#include "app/Preferences.h"
#include "app/forms/FormHelpers.h"

namespace marisonde {

namespace {

/// "Channel_Check(3)" is kept as "Channel_Check3".
QString KeyOf(const QWidget& control) {
    QString key = control.objectName();
    return key.remove('(').remove(')');
}

/// The parts of spin boxes and editable combo boxes are controls to the toolkit only.
bool IsControl(const QWidget& widget) {
    return !widget.objectName().isEmpty() && !widget.objectName().startsWith("qt_");
}

QFileSystemModel* FilesOf(const QWidget& control) {
    const auto* const view = qobject_cast<const QAbstractItemView*>(&control);
    return view == nullptr ? nullptr : qobject_cast<QFileSystemModel*>(view->model());
}

QString TextOf(const QWidget& control) {
    if (const auto* line = qobject_cast<const QLineEdit*>(&control)) return line->text();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(&control)) return text->toPlainText();
    return static_cast<const QComboBox&>(control).currentText();
}

/// A fixed list takes only what it holds.
void SetText(QWidget& control, const QString& text) {
    if (auto* line = qobject_cast<QLineEdit*>(&control)) return line->setText(text);
    if (auto* area = qobject_cast<QPlainTextEdit*>(&control)) return area->setPlainText(text);
    static_cast<QComboBox&>(control).setCurrentText(text);
}

/// One kind of value that is kept of a kind of control.
struct ValueRow {
    bool (*has)(const QWidget&);
    const char* prefix;  ///< of the key
    QString (*read)(const QWidget&);
    void (*write)(QWidget&, const QString&);
};

template <class... Types>
bool IsA(const QWidget& control) {
    return (... || (qobject_cast<const Types*>(&control) != nullptr));
}

bool ShowsFiles(const QWidget& control) {
    const QFileSystemModel* const files = FilesOf(control);
    return files != nullptr && files->filter().testFlag(QDir::Files);
}

const std::array kValues{
    ValueRow{IsA<QLineEdit, QPlainTextEdit, QComboBox>, "", TextOf, SetText},
    ValueRow{IsA<QCheckBox, QRadioButton>, "",
             [](const QWidget& control) {
                 return QString(static_cast<const QAbstractButton&>(control).isChecked() ? "1" : "0");
             },
             [](QWidget& control, const QString& text) {
                 static_cast<QAbstractButton&>(control).setChecked(FlagFromText(text.toStdString()));
             }},
    ValueRow{[](const QWidget& control) { return FilesOf(control) != nullptr; }, "Path",
             [](const QWidget& control) { return FilesOf(control)->rootPath(); },
             [](QWidget& control, const QString& path) {
                 const QModelIndex root = FilesOf(control)->setRootPath(path);
                 static_cast<QAbstractItemView&>(control).setRootIndex(root);
             }},
    ValueRow{ShowsFiles, "Pattern",
             [](const QWidget& control) { return FilesOf(control)->nameFilters().join(';'); },
             [](QWidget& control, const QString& pattern) {
                 FilesOf(control)->setNameFilters(pattern.split(';'));
             }},
};

/// Calls `use` with each value of each control of the form and its key.
template <class Use>
void ForEachValue(const QWidget& form, Use use) {
    for (QWidget* control : form.findChildren<QWidget*>()) {
        if (!IsControl(*control)) continue;
        for (const ValueRow& row : kValues)
            if (row.has(*control)) use(*control, row, (row.prefix + KeyOf(*control)).toStdString());
    }
}

}  // namespace

void SaveControlValues(Settings& settings, const QWidget& form) {
    SaveFormGeometry(settings, form);
    const std::string section = form.objectName().toStdString();
    ForEachValue(form, [&](const QWidget& control, const ValueRow& row, const std::string& key) {
        settings.SaveSetting(section, key, row.read(control).toStdString());
    });
}

void RestoreControlValues(const Settings& settings, QWidget& form) {
    RestoreFormGeometry(settings, form);
    const std::string section = form.objectName().toStdString();
    // No text that a user could have entered: it tells an empty value from a missing one.
    const std::string missing("\0", 1);
    ForEachValue(form, [&](QWidget& control, const ValueRow& row, const std::string& key) {
        const std::string text = settings.GetSetting(section, key, missing);
        if (text != missing) row.write(control, FromText(text));
    });
}

}  // namespace marisonde
