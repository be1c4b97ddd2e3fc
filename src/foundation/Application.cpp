#include "foundation/Application.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

namespace {

/// Qt ends the process when it finds no display, so that is looked at first where it can be.
bool IsDisplayAbsent() {
#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)
    return qEnvironmentVariableIsEmpty("DISPLAY") &&
           qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
           qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return false;
#endif
}

}  // namespace

void EnsureApplication() {
    if (qobject_cast<QApplication *>(QCoreApplication::instance())) return;
    if (QCoreApplication::instance()) {
        throw Failure(
            InvalidArgument, QStringLiteral("QCoreApplication"),
            QStringLiteral("Окна показать нельзя: в программе создан объект приложения без "
                           "поддержки окон."));
    }
    if (IsDisplayAbsent()) {
        throw Failure(
            InvalidArgument, QStringLiteral("QApplication"),
            QStringLiteral("Окна показать нельзя: нет доступа к экрану (переменные DISPLAY и "
                           "WAYLAND_DISPLAY не заданы)."));
    }
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

}  // namespace Vk_DocQuery
