// Figures of the performance harness: percentiles, processor time, memory, and the lines the
// harness prints. A figure is printed as one line that the harness script collects:
//   RESULT <key> <value> <unit> | <what it is>
#pragma once

#include <QString>

#include <vector>

namespace zorvik::harness {

struct Distribution {
    std::size_t count = 0;
    double median = 0;
    double p99 = 0;
    double max = 0;
};
/// Median, 99th percentile (the value 99 % of the samples do not exceed) and maximum.
Distribution distributionOf(std::vector<double> values);

/// Processor time (user + system) of the whole process and of the calling thread, in seconds.
double processCpuSeconds();
double threadCpuSeconds();
/// Highest resident memory of the process so far (VmHWM), in MiB.
double peakResidentMiB();
/// The machine's load average as /proc/loadavg gives it (first three numbers).
QString loadAverage();

/// Prints a figure for the script: RESULT key value unit | what.
void result(const QString& key, double value, const QString& unit, const QString& what);
/// Prints a line of detail (indented, not collected).
void detail(const QString& text);

} // namespace zorvik::harness
