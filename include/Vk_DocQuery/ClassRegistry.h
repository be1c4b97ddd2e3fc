#pragma once

#include <functional>
#include <memory>

#include <QString>

#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

/// What a class that is entered under a name finds there.
enum class Takeover {
    None,      ///< nothing
    Unused,    ///< another class, of which nobody has an object
    FromUsed,  ///< objects that were made under the name before, and may be in use: the accessors
               ///< of the library go on with theirs, each on its thread, to the end of that thread
};

/// Where suppliers enter the classes that the library creates by name. Class names compare without
/// regard to case. The registry serves the whole process and may be used from any thread.
///
/// Names the library asks for:
///   "Vk_Records.VkTemplate", "Vk_Records.VkTemplType", "Vk_Records.VkAccStream",
///   "Vk_Records.VkPerson", "Vk_Records.VkRecFactory" (Records.h, Providers.h),
///   "Vk_DBProvider.BlankQueries", "Vk_DBProvider.DBQAccStream", "Vk_DBProvider.PersonQueries",
///   "Vk_Lib.FilesLibrary" (Providers.h),
///   "Vk_DBProvider.RecordAnnouncements" (RecordAnnouncements.h, optional),
///   "Vk_Errors.VkErrorHandler", "Vk_SplashWindow.SplashWindow" (HostServices.h, both optional).
///
/// The library brings a class of its own for two of them, "Vk_Lib.FilesLibrary" and
/// "Vk_Records.VkRecFactory": it is what is made as long as no other has been entered. A class that
/// does a little more can hand on to it; make the library's object before entering the class.
///
/// The accessors keep what they made, once for each thread: enter classes before the first window
/// or file. Providers, the names of periods and the files library are reached through accessors;
/// records, the error window and the splash window are made anew each time. Register tells when it
/// comes too late for that: a host that wants one supplier throughout takes Takeover::FromUsed for
/// a mistake of its own.
class VK_DOCQUERY_EXPORT ClassRegistry {
public:
    /// Makes one object; called on the thread that asks for it. What it raises goes up to whoever
    /// asked.
    using Factory = std::function<std::shared_ptr<Object>()>;

    /// Enters a class, or puts another factory in place of the one entered before or of the
    /// library's own, and says what that was. Objects that were made before stay as they are.
    static Takeover Register(const QString &aClass, Factory aFactory);
    /// Takes a class out; a name that is not entered is no failure. The library's own class, where
    /// there is one, is back then.
    static void Unregister(const QString &aClass);
    /// Whether Create knows the name, by entry or as one of the library's own.
    static bool IsRegistered(const QString &aClass);

    /// Makes an object of the class on the machine aServer; empty is this one, the only one there
    /// is. Raises ClassNotCreatable if the name is not known, if a server is named, or if the
    /// factory gives nothing; a failure of the factory is passed on.
    static std::shared_ptr<Object> Create(const QString &aClass,
                                          const QString &aServer = QString());
};

/// Enters a class with a default constructor.
template <class Class>
Takeover RegisterClass(const QString &aClass) {
    return ClassRegistry::Register(aClass, [] { return std::make_shared<Class>(); });
}

}  // namespace Vk_DocQuery
