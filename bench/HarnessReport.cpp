// Percentiles, processor time and memory of the harness, and its printed lines.
#include "HarnessReport.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sys/resource.h>

namespace zorvik::harness {

Distribution distributionOf(std::vector<double> values) {
    Distribution d;
    d.count = values.size();
    if (values.empty())
        return d;
    std::sort(values.begin(), values.end());
    const std::size_t n = values.size();
    d.median = n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
    d.p99 = values[static_cast<std::size_t>(std::ceil(0.99 * static_cast<double>(n))) - 1];
    d.max = values.back();
    return d;
}

namespace {
double seconds(const rusage& u) {
    return static_cast<double>(u.ru_utime.tv_sec + u.ru_stime.tv_sec) +
           static_cast<double>(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}
} // namespace

double processCpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return seconds(u);
}

double threadCpuSeconds() {
    rusage u{};
    getrusage(RUSAGE_THREAD, &u);
    return seconds(u);
}

double peakResidentMiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:")) // "VmHWM:    123456 kB"
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024.0;
    }
    return 0;
}

QString loadAverage() {
    QFile f(QStringLiteral("/proc/loadavg"));
    if (!f.open(QIODevice::ReadOnly))
        return QStringLiteral("?");
    return QString::fromLatin1(f.readAll())
        .split(QLatin1Char(' '))
        .mid(0, 3)
        .join(QLatin1Char(' '));
}

void result(const QString& key, double value, const QString& unit, const QString& what) {
    std::printf("RESULT %s %.3f %s | %s\n", qPrintable(key), value, qPrintable(unit),
                qPrintable(what));
    std::fflush(stdout);
}

void detail(const QString& text) {
    std::printf("  %s\n", qPrintable(text));
    std::fflush(stdout);
}

} // namespace zorvik::harness
