// Runs the program's modal windows (the File form, the options dialog, the preview, page and
// print setup) through one seam; tests replace the runner to drive them in place.
#pragma once

#include <functional>

class QDialog;

namespace zorvik {

/// Shows `dialog` modally and returns its result (QDialog::exec), or hands it to the runner a
/// test installed.
int runModal(QDialog& dialog);

/// Test hook: runs every modal window instead of exec (an empty function restores exec). The
/// runner gets the dialog before it is shown and returns its result; it tells the windows
/// apart by their type (qobject_cast) or name.
void setModalRunner(std::function<int(QDialog&)> runner);

} // namespace zorvik
