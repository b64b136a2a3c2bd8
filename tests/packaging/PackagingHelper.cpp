// Test helper of the packaging tests: answers what a Qt program sees of its installation.
//   zorvik_packaging_helper appdir        prints the program folder Qt reports
//   zorvik_packaging_helper mime FILE...  prints the file type of each FILE, one per line
#include <QCoreApplication>
#include <QMimeDatabase>
#include <QStringList>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() == 2 && args[1] == "appdir") {
        std::printf("%s\n", qPrintable(QCoreApplication::applicationDirPath()));
        return 0;
    }
    if (args.size() >= 3 && args[1] == "mime") {
        const QMimeDatabase db;
        for (qsizetype i = 2; i < args.size(); ++i)
            std::printf("%s\n", qPrintable(db.mimeTypeForFile(args[i]).name()));
        return 0;
    }
    std::fprintf(stderr, "usage: zorvik_packaging_helper appdir | mime FILE...\n");
    return 2;
}
