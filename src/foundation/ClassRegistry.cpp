#include <mutex>

#include <QHash>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/HostServices.h>

#include "foundation/FilesLibrary.h"
#include "foundation/PeriodNames.h"

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

template <class Class>
std::shared_ptr<Object> Made() {
    return std::make_shared<Class>();
}

/// What is there without a supplier.
struct Default {
    const char16_t *Class;
    std::shared_ptr<Object> (*Make)();
};

constexpr Default theDefaults[] = {
    {u"Vk_Lib.FilesLibrary", Made<DefaultFilesLibrary>},
    {u"Vk_Records.VkRecFactory", Made<PeriodNames>},
};

/// The factory entered for the class, else the library's own; none where there is neither.
ClassRegistry::Factory FactoryOf(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    const auto entered = classes.theFactories.constFind(aClass.toCaseFolded());
    if (entered != classes.theFactories.cend()) return *entered;
    for (const Default &own : theDefaults) {
        if (aClass.compare(QStringView(own.Class), Qt::CaseInsensitive) == 0) return own.Make;
    }
    return nullptr;
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
    return FactoryOf(aClass) != nullptr;
}

std::shared_ptr<Object> ClassRegistry::Create(const QString &aClass, const QString &aServer) {
    if (!aServer.isEmpty()) {
        RaiseNotCreatable(
            QStringLiteral("Класс \"%1\" нельзя создать на другом компьютере.").arg(aClass));
    }
    const Factory factory = FactoryOf(aClass);
    if (!factory) RaiseNotCreatable(QStringLiteral("Класс \"%1\" не зарегистрирован.").arg(aClass));
    auto object = factory();
    if (!object)
        RaiseNotCreatable(QStringLiteral("Не удалось создать объект класса \"%1\".").arg(aClass));
    return object;
}

}  // namespace Vk_DocQuery
