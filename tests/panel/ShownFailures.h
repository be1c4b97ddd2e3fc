#pragma once

#include <QStringList>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/HostServices.h>

namespace VkTests {

/// Takes the failures that would be shown to the user while it lives.
class ShownFailures {
public:
    ShownFailures() {
        Texts().clear();
        Vk_DocQuery::RegisterClass<Handler>(theClass);
    }
    ~ShownFailures() { Vk_DocQuery::ClassRegistry::Unregister(theClass); }
    Q_DISABLE_COPY_MOVE(ShownFailures)

    /// The text of each, as far as it is a chain of entries of the panel: procedure names parted by
    /// blanks, the outermost first.
    static QStringList Chains() {
        QStringList chains;
        const QString prefix = QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.");
        for (const QString &text : Texts()) {
            QStringList names;
            for (const QString &line : text.split(QStringLiteral("\r\n"))) {
                if (!line.startsWith(prefix) || !line.endsWith(u']')) break;
                names << line.mid(prefix.size()).chopped(1);
            }
            chains << names.join(u' ');
        }
        return chains;
    }
    static QStringList &Texts() {
        static QStringList texts;
        return texts;
    }

private:
    class Handler : public Vk_DocQuery::VkErrorHandler {
    public:
        void ErrorMsgBox(const QString &aText, const QString &, qint32, const QString &) override {
            Texts() << aText;
        }
    };
    const QString theClass = QStringLiteral("Vk_Errors.VkErrorHandler");
};

}  // namespace VkTests
