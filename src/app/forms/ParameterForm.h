#pragma once

#include <QDialog>
#include <initializer_list>
#include <string>

#include "app/AppContext.h"
#include "app/forms/FormDialogs.h"

class QLineEdit;
class QPushButton;

namespace marisonde {

/// A dialog of parameters: what the user enters, and a row of buttons below. Nothing changes before OK. Its
/// place is kept.
class ParameterForm : public QDialog {
    Q_OBJECT

  public:
    /// Opens the form with what is in force.
    void Show();

  protected:
    /// `app` outlives the form.
    ParameterForm(AppContext& app, QWidget* parent, const char* name, const char* title);

    /// Puts the parts one below the other, and under them `others`, OK and Cancel. The last step of making a
    /// form: keys then go through it as the eye does.
    void LayOut(std::initializer_list<QWidget*> parts, std::initializer_list<QPushButton*> others = {});
    /// Opens a page of the help: what the parameters mean.
    QPushButton* MakeAboutButton(const char* caption, const char* page);

    virtual void FillIn() = 0;
    virtual void OKButton_Click() = 0;

    /// Leads the user to the box whose text is not right, and tells why.
    void ShowWrong(QLineEdit* box, const std::string& message);
    void done(int result) override;

    [[nodiscard]] AppContext& App() { return app_; }
    [[nodiscard]] FormDialogs& Ask() { return dialogs_; }

  private:
    AppContext& app_;
    FormDialogs dialogs_;
};

}  // namespace marisonde
