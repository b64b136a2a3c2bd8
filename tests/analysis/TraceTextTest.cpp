// The texts traces are written in: the CSV of the traces on screen (comment header, the
// columns for one or two sample intervals, empty fields for a trace that is not there, '.'
// under a German locale) and the lines of a recording in CSV and JSON Lines.
#include "analysis/TraceText.h"
#include "../storage/GermanLocale.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace zorvik;

namespace {

TraceColumn ramp(float step, float interval) {
    TraceColumn c;
    for (std::size_t i = 0; i < c.volts.size(); ++i)
        c.volts[i] = static_cast<float>(i) * step;
    c.sampleInterval = interval;
    return c;
}

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

} // namespace

TEST(TraceText, TheCsvHasItsCommentHeaderThenTimeAndTheVoltsOfBothTraces) {
    TraceTable t;
    t.facts = {{"Saved", "2026-11-24 10:30:01"}, {"Sample rate", "1Ms/s"}};
    t.live = ramp(0.1587301f, 1e-6f);
    t.reference = ramp(-0.5f, 1e-6f);
    const std::vector<std::string> l = lines(tracesCsv(t));
    ASSERT_EQ(l.size(), 4u + 128u);
    EXPECT_EQ(l[0], "# Zorvik traces");
    EXPECT_EQ(l[1], "# Saved: 2026-11-24 10:30:01");
    EXPECT_EQ(l[2], "# Sample rate: 1Ms/s");
    EXPECT_EQ(l[3], "time,live,reference");
    EXPECT_EQ(l[4], "0,0,-0");
    EXPECT_EQ(l[5], "9.999999974752427e-07,0.1587301,-0.5");
    // 127 x the single nearest 1e-6, in double; 127 x 0.1587301 in single.
    EXPECT_EQ(l[131], "0.00012699999967935582,20.158724,-63.5");
}

TEST(TraceText, TwoSampleIntervalsGiveTheReferenceItsOwnTimeColumn) {
    TraceTable t;
    t.live = ramp(1.0f, 0.5f);
    t.reference = ramp(2.0f, 0.25f);
    const std::vector<std::string> l = lines(tracesCsv(t));
    EXPECT_EQ(l[1], "time,live,reference_time,reference");
    EXPECT_EQ(l[3], "0.5,1,0.25,2");
    EXPECT_EQ(l[129], "63.5,127,31.75,254");
}

TEST(TraceText, ATraceThatIsNotThereLeavesItsFieldEmpty) {
    TraceTable only;
    only.reference = ramp(1.0f, 2.0f);
    std::vector<std::string> l = lines(tracesCsv(only));
    EXPECT_EQ(l[1], "time,live,reference");
    EXPECT_EQ(l[3], "2,,1");
    TraceTable live;
    live.live = ramp(1.0f, 2.0f);
    l = lines(tracesCsv(live));
    EXPECT_EQ(l[3], "2,1,");
}

TEST(TraceText, NumbersKeepTheirPointUnderAGermanLocale) {
    zorvik::testing::GermanLocale german;
    ASSERT_TRUE(german.available());
    TraceTable t;
    t.live = ramp(0.25f, 0.5f);
    EXPECT_EQ(lines(tracesCsv(t))[3], "0.5,0.25,");
    RecordedFrame f;
    f.seconds = 1.5;
    EXPECT_EQ(recordingLine(RecordFormat::Csv, f).substr(0, 8), "0,1.5,0,");
}

TEST(TraceText, ARecordingLineInCsvFollowsItsHeader) {
    const std::string header = recordingHeader(RecordFormat::Csv, true);
    EXPECT_EQ(header.substr(0, 52), "index,time,sample_interval,volts_per_count,v0,v1,v2,");
    EXPECT_NE(header.find(",v127,max,min,peak_to_peak,"), std::string::npos);
    EXPECT_EQ(header.substr(header.size() - 20), "rise_time,fall_time\n");
    EXPECT_EQ(recordingHeader(RecordFormat::Csv, false)
                  .substr(recordingHeader(RecordFormat::Csv, false).size() - 6),
              ",v127\n");
    EXPECT_EQ(recordingHeader(RecordFormat::Jsonl, true), "");

    RecordedFrame f;
    f.index = 7;
    f.seconds = 0.25;
    f.sampleInterval = 1e-6f;
    f.voltsPerCount = 0.1587301f;
    f.volts.fill(0.5f);
    MeasureValues m{};
    m[static_cast<std::size_t>(Measure::Maximum)] = 0.5;
    f.measurements = m;
    const std::string line = recordingLine(RecordFormat::Csv, f);
    EXPECT_EQ(line.substr(0, 30), "7,0.25,1e-06,0.1587301,0.5,0.5");
    EXPECT_EQ(line.back(), '\n');
    std::size_t commas = 0;
    for (char c : line)
        commas += c == ',';
    EXPECT_EQ(commas, 3u + 128u + 17u);
    EXPECT_EQ(line.substr(line.size() - 21), ",0.5" + std::string(16, ',') + "\n");
}

TEST(TraceText, ARecordingLineInJsonLinesHoldsTheVoltsAndTheMeasurementsOrNull) {
    RecordedFrame f;
    f.index = 3;
    f.seconds = 2.0;
    f.sampleInterval = 5e-5f;
    f.voltsPerCount = 1.587301f;
    for (std::size_t i = 0; i < f.volts.size(); ++i)
        f.volts[i] = i == 1 ? -1.5f : 0.0f;
    std::string line = recordingLine(RecordFormat::Jsonl, f);
    EXPECT_EQ(line.substr(0, 89), "{\"index\":3,\"time\":2,\"sample_interval\":5e-05,"
                                  "\"volts_per_count\":1.587301,\"volts\":[0,-1.5,0,");
    EXPECT_EQ(line.substr(line.size() - 5), ",0]}\n");
    MeasureValues m{};
    m[static_cast<std::size_t>(Measure::FallTime)] = 2e-6;
    f.measurements = m;
    line = recordingLine(RecordFormat::Jsonl, f);
    EXPECT_NE(line.find("],\"max\":null,\"min\":null,"), std::string::npos);
    EXPECT_EQ(line.substr(line.size() - 36), "\"rise_time\":null,\"fall_time\":2e-06}\n");
}
