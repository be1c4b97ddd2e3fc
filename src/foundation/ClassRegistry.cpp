#include <mutex>

#include <QHash>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/HostServices.h>

namespace Vk_DocQuery {

namespace {

struct Classes {
    std::mutex theLock;
    QHash<QString, ClassRegistry::Factory> theFactories;
};

Classes &TheClasses() {
    static Classes classes;
    return classes;
}

[[noreturn]] void RaiseNotCreatable(const QString &aText) {
    throw Failure(ClassNotCreatable, QStringLiteral("ClassRegistry"), aText);
}

}  // namespace

Object::~Object() = default;
VkErrorHandler::~VkErrorHandler() = default;
SplashWindow::~SplashWindow() = default;

void ClassRegistry::Register(const QString &aClass, Factory aFactory) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    classes.theFactories.emplace(aClass.toCaseFolded(), std::move(aFactory));
}

void ClassRegistry::Unregister(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    classes.theFactories.remove(aClass.toCaseFolded());
}

bool ClassRegistry::IsRegistered(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    return classes.theFactories.contains(aClass.toCaseFolded());
}

std::shared_ptr<Object> ClassRegistry::Create(const QString &aClass, const QString &aServer) {
    if (!aServer.isEmpty()) {
        RaiseNotCreatable(
            QStringLiteral("Класс \"%1\" нельзя создать на другом компьютере.").arg(aClass));
    }
    Factory factory;
    {
        Classes &classes = TheClasses();
        const std::lock_guard lock(classes.theLock);
        factory = classes.theFactories.value(aClass.toCaseFolded());
    }
    if (!factory) RaiseNotCreatable(QStringLiteral("Класс \"%1\" не зарегистрирован.").arg(aClass));
    auto object = factory();
    if (!object)
        RaiseNotCreatable(QStringLiteral("Не удалось создать объект класса \"%1\".").arg(aClass));
    return object;
}

}  // namespace Vk_DocQuery
