#pragma once

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// The stand-alone browser of report forms: the user finds a form by letters of its name or digits
/// of its code and sees in which periods, and for whom, it exists. It changes nothing.
///
///     Vk_DocQuery::TemplateQuerier().Execute();
///
/// Everything happens on the thread of the windows; a call on another one raises InvalidArgument. A
/// host without a QApplication gets one on first need.
class TemplateQuerier {
public:
    TemplateQuerier() = default;
    TemplateQuerier(const TemplateQuerier &) = delete;
    TemplateQuerier &operator=(const TemplateQuerier &) = delete;

    /// Runs the window over the active one and returns when it is closed, or when that one goes.
    /// Failures of the window are shown to the user; raises Failure only if windows cannot be shown
    /// at all.
    VK_DOCQUERY_EXPORT void Execute();
};

}  // namespace Vk_DocQuery
