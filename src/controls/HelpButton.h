#pragma once

#include <QPushButton>

namespace Vk_DocQuery {

/// Opens a page of the help through the desktop.
class DHelpButton : public QPushButton {
    Q_OBJECT

public:
    /// aPage is a path relative to the folder of the application.
    explicit DHelpButton(const QString &aPage, QWidget *aParent = nullptr);
    /// The whole path of the page.
    QString PagePath() const;

private:
    void OpenPage();

    QString thePage;
};

}  // namespace Vk_DocQuery
