#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace navro {

// Turns the captured sound into 24 smoothed band levels between 0 and 1.
//
// process() runs on the capture's thread and touches only the analysis buffers and, under the
// lock, the published levels; levels() and heardSound() are read from any thread. configure()
// and reset() are for while no capture feeds the analyser. Every buffer is allocated here, so
// the audio path never allocates.
class BandAnalyzer {
public:
    static constexpr int bandCount = 24;
    static constexpr int fftSize = 1024;
    static constexpr int binCount = fftSize / 2;
    // Seconds on a clock that only moves forward, for how fresh the levels are.
    using MonotonicNow = std::function<double()>;

    BandAnalyzer(); // configured for 48000 Hz, on the steady clock
    explicit BandAnalyzer(MonotonicNow now);
    ~BandAnalyzer();
    BandAnalyzer(const BandAnalyzer&) = delete;
    BandAnalyzer& operator=(const BandAnalyzer&) = delete;

    // Lays out the bands for `sampleRate` (48000 when it is not a number above 0).
    void configure(double sampleRate);
    const std::array<int, 25>& bandEdges() const;
    const std::array<float, 24>& bandBoost() const; // dB

    // Audio thread: `frames` frames of 32-bit float samples, `channels` interleaved.
    void process(const float* samples, std::size_t frames, int channels);

    // `count` bars; zeros once no frame was analysed for staleAfter seconds.
    std::vector<float> levels(int count) const;
    // Whether any analysed frame was louder than the silence gate since the last reset().
    bool heardSound() const;
    void reset();

    // Audio thread, after process(): whether the levels have moved by at least `step` in some
    // band, or sound was first heard, since the last time this answered yes. Lets the capture
    // wake the views only for a change they can show; a steady sound wakes nobody.
    bool takeChange(float step);

    // The falling reference level of the loudest band, in dB (the audio thread's state).
    float peakDB() const { return peakDB_; }

    static constexpr double staleAfter = 0.4;
    static constexpr float silenceRms = 0.0004f;

private:
    void analyze();

    MonotonicNow now_;
    struct Fft;
    std::unique_ptr<Fft> fft_;
    std::array<float, fftSize> window_{};
    std::array<float, fftSize> samples_{};
    std::array<float, fftSize> windowed_{};
    std::array<float, binCount> magnitudes_{};
    int filled_ = 0;
    std::array<int, 25> bandEdges_{};
    std::array<float, 24> bandBoost_{};
    float peakDB_ = 0;
    std::array<float, 24> lastTaken_{};
    bool heardWhenTaken_ = false;

    mutable std::mutex lock_;
    std::array<float, 24> smoothed_{};
    double lastUpdate_ = 0;
    bool heardSound_ = false;
};

// The 24 band levels as `count` bars: bar i is the largest level of its block of bands.
std::vector<float> levelsForBars(const std::array<float, 24>& bands, int count);

} // namespace navro
