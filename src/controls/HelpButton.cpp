#include "controls/HelpButton.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include "look/Pictures.h"
#include "windows/Boxes.h"
#include "windows/ErrorReport.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "DHelpButton";
const QString theTitle = QStringLiteral("Справка");

}  // namespace

DHelpButton::DHelpButton(const QString &aPage, QWidget *aParent)
    : QPushButton(aParent), thePage(aPage) {
    setIcon(StandardPicture(HelpPicture));
    setToolTip(theTitle);
    setShortcut(Qt::Key_F1);
    setAccessibleName(theTitle);
    connect(this, &QPushButton::clicked, this, &DHelpButton::OpenPage);
}

QString DHelpButton::PagePath() const {
    return QDir::cleanPath(QDir(QCoreApplication::applicationDirPath()).absoluteFilePath(thePage));
}

void DHelpButton::OpenPage() try {
    const QString path = PagePath();
    if (!QFileInfo::exists(path))
        ShowWarningBox(QStringLiteral("Не найдена страница справки \"%1\".")
                           .arg(QDir::toNativeSeparators(path)),
                       theTitle);
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        ShowWarningBox(QStringLiteral("Не удалось открыть страницу справки \"%1\".")
                           .arg(QDir::toNativeSeparators(path)),
                       theTitle);
} catch (...) {
    ReportErrorToUser(theModule, __func__);
}

}  // namespace Vk_DocQuery
