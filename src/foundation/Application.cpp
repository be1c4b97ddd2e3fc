#include "foundation/Application.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>

#include "foundation/Display.h"

namespace Vk_DocQuery {

void EnsureApplication() {
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) return;
    if (QCoreApplication::instance()) {
        throw Failure(
            InvalidArgument, QStringLiteral("QCoreApplication"),
            QStringLiteral("Окна показать нельзя: в программе создан объект приложения без "
                           "поддержки окон."));
    }
    const QString reason = ReasonNoDisplay();
    if (!reason.isEmpty()) throw Failure(InvalidArgument, QStringLiteral("QApplication"), reason);
    static int count = 1;
    static char name[] = "Vk_DocQuery";
    static char *arguments[] = {name, nullptr};
    static auto *application = new QApplication(count, arguments);  // never released, as the slots
                                                                    // of the accessors are not
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    static QTranslator translator;
    if (translator.load(QStringLiteral("qtbase_ru"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application->installTranslator(&translator);
}

void EnsureEventLoops() {
    QEventLoop probe;
    QCoreApplication::postEvent(&probe, new QEvent(QEvent::Quit));
    const int result =
        probe.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    if (result >= 0) return;
    throw Failure(InvalidArgument, QStringLiteral("QApplication"),
                  QStringLiteral("Окно показать нельзя: программа завершает работу."));
}

}  // namespace Vk_DocQuery
