// Modal dialogs of the printing chain through one seam.
#include "support/ModalRunner.h"

#include <QDialog>
#include <utility>

namespace zorvik {

namespace {
std::function<int(QDialog&)>& runner() {
    static std::function<int(QDialog&)> instance;
    return instance;
}
} // namespace

int runModal(QDialog& dialog) {
    if (runner())
        return runner()(dialog);
    dialog.setWindowModality(Qt::ApplicationModal);
    return dialog.exec();
}

void setModalRunner(std::function<int(QDialog&)> newRunner) {
    runner() = std::move(newRunner);
}

} // namespace zorvik
