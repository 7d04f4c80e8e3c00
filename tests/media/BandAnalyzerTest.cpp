#include "media/BandAnalyzer.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace navro {
namespace {

// Interleaved frames of a sine in every channel (the second one inverted when asked).
std::vector<float> sine(double hz, double rate, std::size_t frames, int channels = 1,
                        float amplitude = 0.5f, bool invertSecond = false)
{
    std::vector<float> out(frames * std::size_t(channels));
    for (std::size_t i = 0; i < frames; ++i) {
        const float value = amplitude * float(std::sin(2 * std::numbers::pi * hz * i / rate));
        for (int c = 0; c < channels; ++c)
            out[i * channels + c] = (invertSecond && c == 1) ? -value : value;
    }
    return out;
}

void feedSilence(BandAnalyzer& analyzer, std::size_t frames)
{
    const std::vector<float> zeros(frames, 0.0f);
    analyzer.process(zeros.data(), frames, 1);
}

struct Fixture : ::testing::Test {
    double now = 100;
    BandAnalyzer analyzer{[this] { return now; }};

    void feed(const std::vector<float>& samples, int channels = 1)
    {
        analyzer.process(samples.data(), samples.size() / std::size_t(channels), channels);
    }
    int loudestBand()
    {
        const auto levels = analyzer.levels(24);
        return int(std::max_element(levels.begin(), levels.end()) - levels.begin());
    }
};

int bandHolding(const BandAnalyzer& analyzer, double hz, double rate)
{
    const int bin = int(hz / (rate / BandAnalyzer::fftSize));
    const auto& edges = analyzer.bandEdges();
    for (int b = 0; b < BandAnalyzer::bandCount; ++b)
        if (edges[b] <= bin && bin < edges[b + 1])
            return b;
    return -1;
}

TEST(BandAnalyzerLayout, RatesThatAreNotAboveZeroMeanFortyEightKilohertz)
{
    BandAnalyzer reference;
    reference.configure(48000);
    for (double rate : {0.0, -1.0, -44100.0, std::numeric_limits<double>::quiet_NaN(),
                        std::numeric_limits<double>::infinity()}) {
        BandAnalyzer analyzer;
        analyzer.configure(44100);
        analyzer.configure(rate);
        EXPECT_EQ(analyzer.bandEdges(), reference.bandEdges()) << rate;
        EXPECT_EQ(analyzer.bandBoost(), reference.bandBoost()) << rate;
    }
}

TEST(BandAnalyzerLayout, EveryRateGivesOrderedEdgesBelowNyquist)
{
    for (double rate : {1e-300, 1.0, 10.0, 8000.0, 22050.0, 44100.0, 96000.0, 192000.0, 1e12}) {
        BandAnalyzer analyzer;
        analyzer.configure(rate);
        const auto& edges = analyzer.bandEdges();
        EXPECT_GE(edges[0], 1) << rate;
        EXPECT_LE(edges[24], 512) << rate;
        EXPECT_TRUE(std::is_sorted(edges.begin(), edges.end())) << rate;
        for (float boost : analyzer.bandBoost())
            EXPECT_FALSE(std::isnan(boost)) << rate;
    }
    // At 16 kHz the top stays below Nyquist: 7984 Hz is bin 511 of 15.625 Hz (510 after rounding).
    BandAnalyzer analyzer;
    analyzer.configure(16000);
    EXPECT_GE(analyzer.bandEdges()[24], 510);
    EXPECT_LE(analyzer.bandEdges()[24], 511);
}

// At 48 kHz the low bands collapse to one bin each, and the tilt rises 3 dB an octave through
// zero near 120 Hz.
TEST(BandAnalyzerLayout, FortyEightKilohertzBandsAndTilt)
{
    BandAnalyzer analyzer;
    const auto& edges = analyzer.bandEdges();
    // 45 Hz falls in bin 0, which holds the DC term: the first band starts at bin 1.
    EXPECT_EQ(edges[0], 1);
    for (int b = 0; b < 10; ++b)
        EXPECT_EQ(edges[b + 1] - edges[b], 1) << "band " << b;
    // The top edge is 14 kHz: bin 298 of 46.875 Hz.
    EXPECT_EQ(edges[24], 298);
    EXPECT_GT(edges[23] - edges[22], 40);

    const auto& boost = analyzer.bandBoost();
    const double octavesPerBand = std::log2(14000.0 / 45) / 24;
    for (int b = 0; b + 1 < 24; ++b)
        EXPECT_NEAR(boost[b + 1] - boost[b], 3 * octavesPerBand, 1e-4);
    // Band 3's centre is about 104 Hz, band 4's about 132 Hz.
    EXPECT_LT(boost[3], 0);
    EXPECT_GT(boost[4], 0);
}

TEST_F(Fixture, AFullFrameIsAwaitedAndTheFirstRaisesTheLoudestBandSixTenthsOfTheWay)
{
    const auto tone = sine(440, 48000, 1024);
    feed({tone.begin(), tone.end() - 1});
    EXPECT_FALSE(analyzer.heardSound());
    EXPECT_EQ(analyzer.levels(4), std::vector<float>(4, 0.0f));
    feed({tone.end() - 1, tone.end()});
    const auto levels = analyzer.levels(24);
    EXPECT_NEAR(*std::max_element(levels.begin(), levels.end()), 0.6f, 1e-4);
}

TEST_F(Fixture, AFourHundredFortyHertzSinePeaksInTheBandThatHoldsIt)
{
    feed(sine(440, 48000, 48000 / 4));
    EXPECT_TRUE(analyzer.heardSound());
    const int band = bandHolding(analyzer, 440, 48000);
    ASSERT_EQ(band, 8);
    EXPECT_EQ(loudestBand(), band);
    const auto levels = analyzer.levels(24);
    EXPECT_NEAR(levels[band], 1.0f, 1e-3);
    // Two octaves away nothing is left of it.
    EXPECT_LT(levels[band + 8], 0.05f);
    EXPECT_LT(levels[20], 0.05f);
}

TEST_F(Fixture, AToneHighUpPeaksInItsBandAtAnotherRate)
{
    analyzer.configure(44100);
    feed(sine(5000, 44100, 44100 / 4, 2), 2);
    EXPECT_EQ(loudestBand(), bandHolding(analyzer, 5000, 44100));
}

TEST_F(Fixture, SilenceDecaysEveryBandByFourteenPercentAndLeavesThePeak)
{
    feed(sine(1000, 48000, 8192));
    // The first hop still holds half of the tone; the second is silent.
    feedSilence(analyzer, 1024);
    const auto before = analyzer.levels(24);
    const float peak = analyzer.peakDB();
    ASSERT_GT(*std::max_element(before.begin(), before.end()), 0.1f);

    int hops = 0;
    for (const int more : {1, 3}) {
        feedSilence(analyzer, 512 * std::size_t(more));
        hops += more;
        const auto after = analyzer.levels(24);
        for (int b = 0; b < 24; ++b)
            EXPECT_NEAR(after[b], before[b] * std::pow(0.86f, hops), 1e-6) << hops << " " << b;
        EXPECT_EQ(analyzer.peakDB(), peak);
    }
    EXPECT_TRUE(analyzer.heardSound());
}

TEST_F(Fixture, QuietSoundUnderTheGateIsSilence)
{
    // An amplitude of 0.0005 has an rms of 0.00035.
    feed(sine(440, 48000, 4096, 1, 0.0005f));
    EXPECT_FALSE(analyzer.heardSound());
    EXPECT_EQ(analyzer.levels(24), std::vector<float>(24, 0.0f));
    feed(sine(440, 48000, 4096, 1, 0.0007f));
    EXPECT_TRUE(analyzer.heardSound());
}

TEST_F(Fixture, ThePeakFallsSlowlyWhenTheSoundGetsQuieter)
{
    feed(sine(440, 48000, 8192, 1, 0.5f));
    const float loudPeak = analyzer.peakDB();
    // Half loud, half quiet.
    feed(sine(440, 48000, 512, 1, 0.005f));
    const float peak = analyzer.peakDB();
    EXPECT_LE(peak, loudPeak);
    EXPECT_GE(peak, loudPeak - 0.06f);
    // Hops that are all quiet: the loud band drops 40 dB, the reference 0.06 dB a hop.
    feed(sine(440, 48000, 512, 1, 0.005f));
    EXPECT_NEAR(analyzer.peakDB(), peak - 0.06f, 1e-4);
    feed(sine(440, 48000, 512, 1, 0.005f));
    EXPECT_NEAR(analyzer.peakDB(), peak - 0.12f, 1e-4);
}

TEST_F(Fixture, StereoIsTheAverageOfTheFirstTwoChannelsAndACountBelowOneReadsOne)
{
    // Opposite channels cancel out; a third channel is not listened to.
    feed(sine(440, 48000, 4096, 3, 0.5f, true), 3);
    EXPECT_FALSE(analyzer.heardSound());
    feed(sine(440, 48000, 4096, 2), 2);
    EXPECT_TRUE(analyzer.heardSound());

    analyzer.reset();
    const auto samples = sine(440, 48000, 2048);
    analyzer.process(samples.data(), samples.size(), 0);
    EXPECT_TRUE(analyzer.heardSound());
    analyzer.process(nullptr, 100, 2);
}

TEST_F(Fixture, LevelsGoStaleFourTenthsOfASecondAfterTheLastFrame)
{
    feed(sine(440, 48000, 2048));
    now += 0.399;
    EXPECT_GT(analyzer.levels(24)[8], 0.5f);
    now += 0.001;
    EXPECT_EQ(analyzer.levels(24), std::vector<float>(24, 0.0f));
    EXPECT_EQ(analyzer.levels(3), std::vector<float>(3, 0.0f));
    // A silent frame is a fresh one too: the levels are back, decayed.
    feedSilence(analyzer, 2048);
    EXPECT_GT(analyzer.levels(24)[8], 0.1f);
}

TEST_F(Fixture, ResetForgetsEverything)
{
    feed(sine(440, 48000, 4096));
    feed(sine(440, 48000, 700));
    analyzer.reset();
    EXPECT_FALSE(analyzer.heardSound());
    EXPECT_EQ(analyzer.peakDB(), 0.0f);
    // Zero lastUpdate: stale at once.
    EXPECT_EQ(analyzer.levels(24), std::vector<float>(24, 0.0f));
    // The partly filled frame was dropped: 1023 new samples are not a frame.
    feed(sine(440, 48000, 1023));
    EXPECT_FALSE(analyzer.heardSound());
    feed(sine(440, 48000, 1));
    EXPECT_TRUE(analyzer.heardSound());
}

TEST_F(Fixture, ChangesAreTakenOnlyWhenTheyAreBigEnoughToShow)
{
    // Silence from the start: nothing to show.
    feedSilence(analyzer, 4096);
    EXPECT_FALSE(analyzer.takeChange(1.0f / 64));
    // The first sound is news, however small its levels.
    feed(sine(440, 48000, 2048, 1, 0.002f));
    EXPECT_TRUE(analyzer.takeChange(1.0f));
    EXPECT_FALSE(analyzer.takeChange(1.0f));
    // A tone that grows is news until it settles; once steady, the same tone is quiet.
    feed(sine(440, 48000, 2048));
    EXPECT_TRUE(analyzer.takeChange(1.0f / 64));
    for (int round = 0; round < 40; ++round)
        feed(sine(440, 48000, 2048));
    analyzer.takeChange(1.0f / 64);
    feed(sine(440, 48000, 2048));
    EXPECT_FALSE(analyzer.takeChange(1.0f / 64));
    // Falling silent decays every band by 14 % a frame: news again.
    feedSilence(analyzer, 1024);
    EXPECT_TRUE(analyzer.takeChange(1.0f / 64));
    // After a reset, sound is heard for the first time again.
    analyzer.reset();
    feed(sine(440, 48000, 2048, 1, 0.002f));
    EXPECT_TRUE(analyzer.takeChange(1.0f));
}

std::array<float, 24> ramp()
{
    std::array<float, 24> bands{};
    for (int b = 0; b < 24; ++b)
        bands[b] = float((b * 7) % 24) / 24;
    return bands;
}

TEST(LevelsForBars, EachBarIsTheLargestOfItsBlockAndCountsBelowOneGiveNothing)
{
    const auto bands = ramp();
    EXPECT_TRUE(levelsForBars(bands, 0).empty());
    EXPECT_TRUE(levelsForBars(bands, -4).empty());
    struct Case {
        int count;
        std::vector<std::pair<int, int>> blocks; // [first, end) of each bar
    };
    const std::vector<Case> cases = {
        {24, {}},
        {12, {}},
        {1, {{0, 24}}},
        {4, {{0, 6}, {6, 12}, {12, 18}, {18, 24}}},
        {5, {{0, 4}, {4, 9}, {9, 14}, {14, 19}, {19, 24}}},
        {7, {{0, 3}, {3, 6}, {6, 10}, {10, 13}, {13, 17}, {17, 20}, {20, 24}}},
    };
    for (const auto& c : cases) {
        auto blocks = c.blocks;
        if (blocks.empty())
            for (int i = 0; i < c.count; ++i)
                blocks.push_back({i * 24 / c.count, (i + 1) * 24 / c.count});
        const auto bars = levelsForBars(bands, c.count);
        ASSERT_EQ(int(bars.size()), c.count);
        for (int i = 0; i < c.count; ++i) {
            const auto [first, end] = blocks[i];
            EXPECT_EQ(bars[i], *std::max_element(bands.begin() + first, bands.begin() + end))
                << c.count << " bars, bar " << i;
        }
    }
}

TEST(LevelsForBars, MoreBarsThanBandsRepeatBands)
{
    const auto bands = ramp();
    const auto bars = levelsForBars(bands, 48);
    ASSERT_EQ(bars.size(), 48u);
    for (int i = 0; i < 48; ++i)
        EXPECT_EQ(bars[i], bands[i / 2]) << i;
}

} // namespace
} // namespace navro
