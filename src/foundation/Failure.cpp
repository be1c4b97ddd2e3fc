#include <Vk_DocQuery/Failure.h>

namespace Vk_DocQuery {

Failure::Failure(qint32 aNumber, QString aSource, QString aDescription, qint32 aLine)
    : theNumber(aNumber),
      theSource(std::move(aSource)),
      theDescription(std::move(aDescription)),
      theLine(aLine),
      theUtf8(theDescription.toUtf8()) {}

Failure::Failure(const Failure &) = default;
Failure &Failure::operator=(const Failure &) = default;
Failure::~Failure() = default;

const char *Failure::what() const noexcept {
    return theUtf8.constData();
}

}  // namespace Vk_DocQuery
