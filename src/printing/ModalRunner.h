// Runs the printing chain's modal dialogs; tests replace the runner to drive them in place.
#pragma once

#include <functional>

class QDialog;

namespace zorvik {

/// Shows `dialog` modally and returns its result (QDialog::exec), or hands it to the runner a
/// test installed.
int runModal(QDialog& dialog);

/// Test hook: runs every modal dialog of the printing chain instead of exec (an empty function
/// restores exec). The runner gets the dialog before it is shown and returns its result.
void setModalRunner(std::function<int(QDialog&)> runner);

} // namespace zorvik
