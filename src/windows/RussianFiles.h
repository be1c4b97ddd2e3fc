#pragma once

class QFileDialog;

namespace Vk_DocQuery {

/// Has the files in Qt's own file dialog speak Russian: headers, sizes, dates and kinds, new
/// folders and names that cannot be. Without effect on a dialog of the desktop. Before the dialog
/// gets its name filters and its place.
void ListFilesInRussian(QFileDialog &aDialog);

}  // namespace Vk_DocQuery
