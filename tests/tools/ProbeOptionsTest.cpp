// Tests of zorvik-probe's command line: what each option sets, the errors and the help text.
#include "probe/ProbeOptions.h"
#include "probe/DemoTour.h"

#include <gtest/gtest.h>
#include <sstream>

using namespace zorvik;
using namespace std::chrono_literals;

namespace {

ProbeCommand parsed(const std::vector<std::string>& args) {
    const auto result = parseProbeCommand(args);
    EXPECT_TRUE(result.command.has_value()) << result.error;
    return result.command.value_or(ProbeCommand{});
}

std::string errorOf(const std::vector<std::string>& args) {
    const auto result = parseProbeCommand(args);
    EXPECT_FALSE(result.command.has_value());
    return result.error;
}

} // namespace

TEST(ProbeOptions, NoArgumentsGiveThePlainSineOfOneKilohertz) {
    const auto c = parsed({});
    EXPECT_EQ(c.settings.signal.shape, Shape::Sine);
    EXPECT_EQ(c.settings.signal.frequency, 1000.0);
    EXPECT_EQ(c.settings.signal.amplitude, 1.0);
    EXPECT_EQ(c.settings.signal.offset, 0.0);
    EXPECT_EQ(c.settings.switchSetting(), 0x24);
    EXPECT_EQ(c.settings.timebase, 6);
    EXPECT_EQ(c.settings.trigger, 0x40);
    EXPECT_EQ(c.settings.level, 16);
    EXPECT_FALSE(c.settings.dvm.has_value());
    EXPECT_TRUE(c.paced);
    EXPECT_FALSE(c.stream.frames.has_value());
    EXPECT_EQ(c.stream.seed, 1u);
    EXPECT_TRUE(c.replayPath.empty());
    EXPECT_FALSE(c.help);
}

TEST(ProbeOptions, SignalAndSwitchOptionsSetTheProbe) {
    const auto c = parsed({"--shape",    "triangle", "--freq",     "50.5",    "--amplitude",
                           "2",          "--offset", "-0.25",      "--range", "0x08",
                           "--coupling", "AC",       "--timebase", "10",      "--trigger",
                           "ex-",        "--level",  "64",         "--dvm",   "1,2,3,0x85"});
    EXPECT_EQ(c.settings.signal.shape, Shape::Triangle);
    EXPECT_EQ(c.settings.signal.frequency, 50.5);
    EXPECT_EQ(c.settings.signal.amplitude, 2.0);
    EXPECT_EQ(c.settings.signal.offset, -0.25);
    EXPECT_EQ(c.settings.range, 0x08);
    EXPECT_EQ(c.settings.coupling, Coupling::Ac);
    EXPECT_EQ(c.settings.timebase, 10);
    EXPECT_EQ(c.settings.trigger, 0x08);
    EXPECT_EQ(c.settings.level, 64);
    EXPECT_EQ(c.settings.dvm, (std::array<std::uint8_t, 4>{1, 2, 3, 0x85}));
}

TEST(ProbeOptions, StreamFaultAndOutputOptionsSetTheRun) {
    const auto c = parsed({"--waiting",
                           "3",
                           "--unpaced",
                           "--drop",
                           "0.01",
                           "--stall-after",
                           "4",
                           "--stall-ms",
                           "250",
                           "--garbage",
                           "17",
                           "--garbage-every",
                           "5",
                           "--disconnect-after",
                           "9",
                           "--frames",
                           "12",
                           "--seed",
                           "42",
                           "--link",
                           "/tmp/ttyZorvik",
                           "--record",
                           "out.bin"});
    EXPECT_EQ(c.stream.waitingBetween, 3u);
    EXPECT_FALSE(c.paced);
    EXPECT_EQ(c.stream.dropProbability, 0.01);
    EXPECT_EQ(c.stream.stallAfter, 4u);
    EXPECT_EQ(c.stream.stallFor, 250ms);
    EXPECT_EQ(c.stream.garbageBytes, 17u);
    EXPECT_EQ(c.stream.garbageEvery, 5u);
    EXPECT_EQ(c.stream.disconnectAfter, 9u);
    EXPECT_EQ(c.stream.frames, 12u);
    EXPECT_EQ(c.stream.seed, 42u);
    EXPECT_EQ(c.linkPath, "/tmp/ttyZorvik");
    EXPECT_EQ(c.recordPath, "out.bin");
}

TEST(ProbeOptions, ReplayGarbageOnlyHelpAndVersionAreSwitches) {
    auto c = parsed({"--replay", "capture.bin", "--loop"});
    EXPECT_EQ(c.replayPath, "capture.bin");
    EXPECT_TRUE(c.loop);
    EXPECT_TRUE(parsed({"--garbage-only"}).stream.garbageOnly);
    EXPECT_TRUE(parsed({"--help"}).help);
    EXPECT_TRUE(parsed({"--version"}).version);
}

TEST(ProbeOptions, ValueMayFollowAnEqualsSign) {
    const auto c = parsed({"--freq=20", "--trigger=0xC0", "--coupling=gnd"});
    EXPECT_EQ(c.settings.signal.frequency, 20.0);
    EXPECT_EQ(c.settings.trigger, 0xC0);
    EXPECT_EQ(c.settings.coupling, Coupling::Gnd);
}

TEST(ProbeOptions, TriggerTakesTheModeNamesOrAnyByte) {
    EXPECT_EQ(parsed({"--trigger", "fr"}).settings.trigger, 0x00);
    EXPECT_EQ(parsed({"--trigger", "IN+"}).settings.trigger, 0x40);
    EXPECT_EQ(parsed({"--trigger", "in-"}).settings.trigger, 0x20);
    EXPECT_EQ(parsed({"--trigger", "ex+"}).settings.trigger, 0x10);
    EXPECT_EQ(parsed({"--trigger", "65"}).settings.trigger, 65);
    EXPECT_EQ(parsed({"--level", "2"}).settings.level, 2);
}

TEST(ProbeOptions, BadValuesGiveOneLineErrors) {
    EXPECT_EQ(errorOf({"--freq", "abc"}), "--freq: 'abc' is not a frequency above 0");
    EXPECT_EQ(errorOf({"--freq", "0"}), "--freq: '0' is not a frequency above 0");
    EXPECT_EQ(errorOf({"--amplitude", "-1"}), "--amplitude: '-1' is not a voltage of 0 or more");
    EXPECT_EQ(errorOf({"--offset", "1V"}), "--offset: '1V' is not a voltage");
    EXPECT_EQ(errorOf({"--shape", "saw"}),
              "--shape: unknown shape 'saw' (sine, square, triangle, noise, dc)");
    EXPECT_EQ(errorOf({"--range", "0x0C"}), "--range: '0x0C' is not 0x00, 0x04 or 0x08");
    EXPECT_EQ(errorOf({"--coupling", "hf"}), "--coupling: unknown coupling 'hf' (gnd, ac, dc)");
    EXPECT_EQ(errorOf({"--timebase", "11"}), "--timebase: '11' is not a time-base code 0..10");
    EXPECT_EQ(errorOf({"--trigger", "256"}),
              "--trigger: '256' is neither fr, in+, in-, ex+, ex- nor a byte");
    EXPECT_EQ(errorOf({"--level", "-1"}), "--level: '-1' is not a byte");
    EXPECT_EQ(errorOf({"--dvm", "1,2,3"}), "--dvm: '1,2,3' is not four bytes B100,B10,B1,FLAGS");
    EXPECT_EQ(errorOf({"--dvm", "1,2,3,4,5"}),
              "--dvm: '1,2,3,4,5' is not four bytes B100,B10,B1,FLAGS");
    EXPECT_EQ(errorOf({"--drop", "1.5"}), "--drop: '1.5' is not a probability 0..1");
    EXPECT_EQ(errorOf({"--frames", "x"}), "--frames: 'x' is not a whole number of 0 or more");
    EXPECT_EQ(errorOf({"--garbage", "5", "--garbage-every", "0"}),
              "--garbage-every: '0' is not a whole number of 1 or more");
    EXPECT_EQ(errorOf({"--link", ""}), "--link: the path is empty");
}

TEST(ProbeOptions, MalformedCommandLinesAreRefused) {
    EXPECT_EQ(errorOf({"--bogus"}), "unknown option '--bogus' (see --help)");
    EXPECT_EQ(errorOf({"sine"}), "unexpected 'sine' (see --help)");
    EXPECT_EQ(errorOf({"--freq"}), "--freq needs a value HZ");
    EXPECT_EQ(errorOf({"--unpaced=yes"}), "--unpaced takes no value");
    EXPECT_EQ(errorOf({"--loop"}), "--loop needs --replay");
    EXPECT_EQ(errorOf({"--replay", "a.bin", "--garbage-only"}),
              "--garbage-only and --replay exclude each other");
    EXPECT_EQ(errorOf({"--stall-ms", "100"}), "--stall-ms needs --stall-after");
    EXPECT_EQ(errorOf({"--garbage-every", "3"}), "--garbage-every needs --garbage");
}

TEST(ProbeOptions, HelpListsEveryOptionWithItsDefault) {
    const std::string help = probeHelpText();
    const char* options[] = {"--shape",
                             "--freq",
                             "--amplitude",
                             "--offset",
                             "--range",
                             "--coupling",
                             "--timebase",
                             "--trigger",
                             "--level",
                             "--dvm",
                             "--waiting",
                             "--unpaced",
                             "--drop",
                             "--stall-after",
                             "--stall-ms",
                             "--garbage",
                             "--garbage-every",
                             "--garbage-only",
                             "--disconnect-after",
                             "--replay",
                             "--loop",
                             "--frames",
                             "--seed",
                             "--link",
                             "--record",
                             "--help",
                             "--version"};
    for (const char* option : options) {
        const auto at = help.find(std::string("  ") + option + " ");
        ASSERT_NE(at, std::string::npos) << option;
        // The option's entry (up to the next option) names its default, except help and
        // version, which take no part in a run.
        const auto next = help.find("\n  -", at + 1);
        const std::string entry = help.substr(at, next - at);
        if (std::string(option) != "--help" && std::string(option) != "--version") {
            EXPECT_NE(entry.find("(default: "), std::string::npos) << entry;
        }
    }
    EXPECT_NE(help.find("(default: sine)"), std::string::npos);
    EXPECT_NE(help.find("(default: 1000)"), std::string::npos);
    EXPECT_NE(help.find("(default: 0x04)"), std::string::npos);
    EXPECT_NE(help.find("(default: in+)"), std::string::npos);
    EXPECT_NE(help.find("(default: 1920 bytes/s)"), std::string::npos);
}

TEST(ProbeOptions, TourPlaysTheDemonstrationAndExcludesTheSignalOptions) {
    const auto tour = parseProbeCommand({"--tour", "--unpaced"});
    ASSERT_TRUE(tour.command) << tour.error;
    ASSERT_TRUE(tour.command->stream.program);
    EXPECT_EQ(tour.command->settings, demoSettings(0));
    EXPECT_EQ(tour.command->stream.program(3 * kDemoStepFrames), demoSettings(3 * kDemoStepFrames));
    EXPECT_FALSE(tour.command->paced);
    const auto both = parseProbeCommand({"--tour", "--shape", "square"});
    EXPECT_FALSE(both.command);
    EXPECT_EQ(both.error, "--tour and --shape exclude each other");
    EXPECT_FALSE(parseProbeCommand({"--tour=1"}).command);
    EXPECT_NE(probeHelpText().find("--tour"), std::string::npos);
}
