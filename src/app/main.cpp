// Composition root of the zorvik program.
#include <QApplication>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    return 0;
}
