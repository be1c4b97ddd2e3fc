#include <Vk_DocQuery/TemplateQuerier.h>

#include "browser/TemplateQuerierForm.h"
#include "foundation/Application.h"
#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {
constexpr char theModule[] = "TemplateQuerier";
}

void TemplateQuerier::Execute() try {
    EnsureApplication();
    EnsureEventLoops();
    TemplateQuerierForm().Execute();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
