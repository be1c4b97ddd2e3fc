#pragma once

#include <unistd.h>

#include <QtGlobal>

namespace VkTests {

/// The rights of nobody, as long as it lives, for a program that runs as root; another program has
/// no more than its own rights anyway.
class AsNobody {
public:
    AsNobody() : theWasRoot(geteuid() == 0) {
        if (theWasRoot &&
            (setresgid(theNobody, theNobody, 0) != 0 || setresuid(theNobody, theNobody, 0) != 0))
            qFatal("cannot drop rights");
    }
    ~AsNobody() {
        if (theWasRoot && (setresuid(0, 0, 0) != 0 || setresgid(0, 0, 0) != 0))
            qFatal("cannot take rights back");
    }
    Q_DISABLE_COPY_MOVE(AsNobody)

private:
    static constexpr uid_t theNobody = 65534;
    bool theWasRoot;
};

}  // namespace VkTests
