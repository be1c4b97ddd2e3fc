// An example of a program that embeds the library, over a sample office.
//   vk_docquery_host [DATABASE]     such as sqlite:/home/me/office.db
#include <QApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

#include "HostWindow.h"

namespace {

/// The sample office in the user's own folder; it is made on first use.
QString SampleOffice() {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(QStringLiteral("."));
    return QStringLiteral("sqlite:") + folder.filePath(QStringLiteral("office.db"));
}

/// Asks again as long as the user wants to; false if the user gives up.
bool OpenRecords(const QString &aDatabase) {
    for (;;) {
        try {
            Vk_Records::OpenDatabase(aDatabase);
            return true;
        } catch (const Vk_DocQuery::Failure &failure) {
            QMessageBox box(
                QMessageBox::Critical, QStringLiteral("Норвик"),
                QStringLiteral("Не удалось открыть базу данных.\n\n") + failure.Description());
            box.addButton(QStringLiteral("Повторить"), QMessageBox::AcceptRole);
            auto *leave = box.addButton(QStringLiteral("Выход"), QMessageBox::RejectRole);
            box.setEscapeButton(leave);
            box.exec();
            if (box.clickedButton() == leave) return false;
        }
    }
}

}  // namespace

int main(int aCount, char **aArguments) {
    QApplication application(aCount, aArguments);
    QApplication::setApplicationName(QStringLiteral("Norvik"));
    QTranslator translator;
    if (translator.load(QStringLiteral("qtbase_ru"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&translator);

    const QStringList arguments = QApplication::arguments();
    if (arguments.size() > 2) {
        qCritical("usage: vk_docquery_host [DATABASE]");
        return 2;
    }
    if (!OpenRecords(arguments.size() == 2 ? arguments[1] : SampleOffice())) return 1;
    HostWindow window;
    window.show();
    return QApplication::exec();
}
