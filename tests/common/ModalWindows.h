// Runs the program's modal windows in place for a test: each kind of window a test expects
// gets a handler, run instead of the window's own modal loop; any other modal window fails the
// test. The windows' exec() comes back when the object goes.
#pragma once

#include "support/ModalRunner.h"

#include <QDialog>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace zorvik::test {

class ModalWindows {
public:
    ModalWindows() {
        setModalRunner([this](QDialog& dialog) { return run(dialog); });
    }
    ~ModalWindows() { setModalRunner({}); }
    ModalWindows(const ModalWindows&) = delete;
    ModalWindows& operator=(const ModalWindows&) = delete;

    /// Windows of type `Window` (frmFile, frmOptions, frmPreview, ...) go to `handler`.
    template <class Window> void on(std::function<void(Window&)> handler) {
        handlers_.push_back([handler](QDialog& dialog) {
            auto* window = qobject_cast<Window*>(&dialog);
            if (!window)
                return false;
            handler(*window);
            return true;
        });
    }

private:
    int run(QDialog& dialog) {
        for (const auto& handler : handlers_) {
            if (handler(dialog))
                return dialog.result();
        }
        ADD_FAILURE() << "a modal window no handler expects: " << dialog.objectName().toStdString();
        return QDialog::Rejected;
    }

    std::vector<std::function<bool(QDialog&)>> handlers_;
};

} // namespace zorvik::test
