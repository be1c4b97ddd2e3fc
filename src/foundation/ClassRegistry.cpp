#include <mutex>

#include <QHash>
#include <QSet>

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
    QSet<QString> theUsed;  // names under which objects were made
    // The class that was asked for last: a list of records asks for its own again and again.
    QString theLast;
    ClassRegistry::Factory theLastsFactory;

    /// What is entered for a class has changed.
    void ForgetLast() {
        theLast.clear();
        theLastsFactory = nullptr;
    }
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

/// The library's own class; none where there is none.
ClassRegistry::Factory OwnFactory(const QString &aClass) {
    for (const Default &own : theDefaults) {
        if (aClass.compare(QStringView(own.Class), Qt::CaseInsensitive) == 0) return own.Make;
    }
    return nullptr;
}

/// The factory entered for the class, else the library's own; none where there is neither. The
/// classes are locked.
ClassRegistry::Factory FactoryIn(const Classes &aClasses, const QString &aClass) {
    const auto entered = aClasses.theFactories.constFind(aClass.toCaseFolded());
    return entered != aClasses.theFactories.cend() ? *entered : OwnFactory(aClass);
}

/// The same for whoever makes an object at once.
ClassRegistry::Factory UsedFactoryOf(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    if (classes.theLastsFactory && aClass == classes.theLast) return classes.theLastsFactory;
    ClassRegistry::Factory factory = FactoryIn(classes, aClass);
    if (factory) {
        classes.theUsed.insert(aClass.toCaseFolded());
        classes.theLast = aClass;
        classes.theLastsFactory = factory;
    }
    return factory;
}

[[noreturn]] void RaiseNotCreatable(const QString &aText) {
    throw Failure(ClassNotCreatable, QStringLiteral("ClassRegistry"), aText);
}

}  // namespace

Takeover ClassRegistry::Register(const QString &aClass, Factory aFactory) {
    Classes &classes = TheClasses();
    const QString name = aClass.toCaseFolded();
    const std::lock_guard lock(classes.theLock);
    const bool wasThere = classes.theFactories.contains(name) || OwnFactory(aClass);
    classes.ForgetLast();
    classes.theFactories[name] = std::move(aFactory);
    if (classes.theUsed.contains(name)) return Takeover::FromUsed;
    return wasThere ? Takeover::Unused : Takeover::None;
}

void ClassRegistry::Unregister(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    classes.ForgetLast();
    classes.theFactories.remove(aClass.toCaseFolded());
}

bool ClassRegistry::IsRegistered(const QString &aClass) {
    Classes &classes = TheClasses();
    const std::lock_guard lock(classes.theLock);
    return FactoryIn(classes, aClass) != nullptr;
}

std::shared_ptr<Object> ClassRegistry::Create(const QString &aClass, const QString &aServer) {
    if (!aServer.isEmpty()) {
        RaiseNotCreatable(
            QStringLiteral("Класс \"%1\" нельзя создать на другом компьютере.").arg(aClass));
    }
    const Factory factory = UsedFactoryOf(aClass);
    if (!factory) RaiseNotCreatable(QStringLiteral("Класс \"%1\" не зарегистрирован.").arg(aClass));
    auto object = factory();
    if (!object)
        RaiseNotCreatable(QStringLiteral("Не удалось создать объект класса \"%1\".").arg(aClass));
    return object;
}

}  // namespace Vk_DocQuery
