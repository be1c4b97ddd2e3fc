#include "foundation/Application.h"

#include <atomic>
#include <mutex>

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLibraryInfo>
#include <QThread>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>

#include "foundation/Display.h"

namespace Vk_DocQuery {

namespace {

std::atomic<bool> theProcessIsEnding = false;

[[noreturn]] void RaiseNoWindows(const char *aSource, const QString &aReason) {
    throw Failure(InvalidArgument, QString::fromLatin1(aSource), aReason);
}

void MakeApplication() {
    const QString reason = ReasonNoDisplay();
    if (!reason.isEmpty()) RaiseNoWindows("QApplication", reason);
    static int count = 1;
    static char name[] = "Vk_DocQuery";
    static char *arguments[] = {name, nullptr};
    static auto *application = new QApplication(count, arguments);  // never released, as the slots
                                                                    // of the accessors are not
    static QTranslator translator;
    if (translator.load(QStringLiteral("qtbase_ru"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        application->installTranslator(&translator);
}

}  // namespace

void EnsureApplication() {
    static std::mutex lock;  // two threads may come first
    const std::lock_guard guard(lock);
    const QCoreApplication *application = QCoreApplication::instance();
    if (!application) {
        MakeApplication();
    } else if (!qobject_cast<const QApplication *>(application)) {
        RaiseNoWindows("QCoreApplication",
                       QStringLiteral("Окна показать нельзя: в программе создан объект приложения "
                                      "без поддержки окон."));
    } else if (application->thread() != QThread::currentThread()) {
        RaiseNoWindows("QThread", QStringLiteral("Вызов из другого потока: с окнами можно работать "
                                                 "только в том потоке, где создано приложение."));
    }
}

/// Statics go in the order in which they came, the last one first: this one is no more when those
/// go that were there before it.
void WatchForTheEnd() {
    struct Watch {
        ~Watch() { theProcessIsEnding = true; }
    };
    static const Watch watch;
}

bool CanDestroyWindows() {
    return !theProcessIsEnding && QCoreApplication::instance();
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
