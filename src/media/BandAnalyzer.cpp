#include "media/BandAnalyzer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <kiss_fftr.h>
#include <limits>
#include <numbers>

namespace navro {
namespace {

constexpr double lowestEdgeHz = 45;
constexpr double highestEdgeHz = 14000;
constexpr double tiltCentreHz = 120;
constexpr float peakFallPerFrame = 0.06f;
constexpr float dynamicRangeDB = 40;
constexpr float levelCurve = 1.4f;
constexpr float fallKeeps = 0.86f;
constexpr float riseTakes = 0.6f;

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

struct BandAnalyzer::Fft {
    kiss_fftr_cfg setup = nullptr;
    std::array<kiss_fft_cpx, binCount + 1> output{};
};

BandAnalyzer::BandAnalyzer() : BandAnalyzer(&steadySeconds) {}

BandAnalyzer::BandAnalyzer(MonotonicNow now) : now_(std::move(now)), fft_(std::make_unique<Fft>())
{
    fft_->setup = kiss_fftr_alloc(fftSize, 0, nullptr, nullptr);
    // A few kilobytes that cannot be had: nothing sensible is left to do.
    if (!fft_->setup)
        std::abort();
    for (int n = 0; n < fftSize; ++n)
        window_[n] = float(0.5 * (1 - std::cos(2 * std::numbers::pi * n / fftSize)));
    configure(0);
}

BandAnalyzer::~BandAnalyzer()
{
    kiss_fftr_free(fft_->setup);
}

void BandAnalyzer::configure(double sampleRate)
{
    const double rate = std::isfinite(sampleRate) && sampleRate > 0 ? sampleRate : 48000;
    const double binHz = rate / fftSize;
    const double top = std::min(rate / 2 - binHz, highestEdgeHz);
    const auto edgeHz = [top](double k) {
        return lowestEdgeHz * std::pow(top / lowestEdgeHz, k / bandCount);
    };
    for (int k = 0; k <= bandCount; ++k) {
        // Clamped before the conversion, since odd rates put the quotient far outside an int.
        const double bin = std::clamp(std::floor(edgeHz(k) / binHz), 1.0, double(binCount - 1));
        bandEdges_[k] = int(bin);
        // Every band keeps at least one bin.
        if (k > 0 && bandEdges_[k] <= bandEdges_[k - 1])
            bandEdges_[k] = std::min(bandEdges_[k - 1] + 1, binCount);
    }
    // +3 dB per octave above 120 Hz, so that the treble reads as loud as it sounds.
    for (int b = 0; b < bandCount; ++b)
        bandBoost_[b] = float(3 * std::log2(edgeHz(b + 0.5) / tiltCentreHz));
}

const std::array<int, 25>& BandAnalyzer::bandEdges() const
{
    return bandEdges_;
}

const std::array<float, 24>& BandAnalyzer::bandBoost() const
{
    return bandBoost_;
}

void BandAnalyzer::process(const float* samples, std::size_t frames, int channels)
{
    if (!samples)
        return;
    const std::size_t stride = std::size_t(std::max(channels, 1));
    for (std::size_t i = 0; i < frames; ++i) {
        const float* frame = samples + i * stride;
        samples_[filled_++] = stride >= 2 ? (frame[0] + frame[1]) / 2 : frame[0];
        if (filled_ == fftSize) {
            analyze();
            // Half the frame stays for the next one: a hop of fftSize / 2 samples.
            std::copy(samples_.begin() + fftSize / 2, samples_.end(), samples_.begin());
            filled_ = fftSize / 2;
        }
    }
}

void BandAnalyzer::analyze()
{
    double power = 0;
    for (float sample : samples_)
        power += double(sample) * sample;
    const bool loud = std::sqrt(power / fftSize) > silenceRms;

    std::array<float, bandCount> target{};
    if (loud) {
        for (int n = 0; n < fftSize; ++n)
            windowed_[n] = samples_[n] * window_[n];
        kiss_fftr(fft_->setup, windowed_.data(), fft_->output.data());
        // The levels are tuned to a packed real FFT that yields twice the plain DFT and keeps
        // the Nyquist term in bin 0's imaginary part.
        const auto& out = fft_->output;
        magnitudes_[0] = 4 * (out[0].r * out[0].r + out[binCount].r * out[binCount].r);
        for (int k = 1; k < binCount; ++k)
            magnitudes_[k] = 4 * (out[k].r * out[k].r + out[k].i * out[k].i);

        std::array<float, bandCount> db{};
        float maxDB = -std::numeric_limits<float>::infinity();
        for (int b = 0; b < bandCount; ++b) {
            const int first = bandEdges_[b];
            const int end = std::max(first, std::min(bandEdges_[b + 1], binCount));
            double sum = 0;
            for (int k = first; k < end; ++k)
                sum += magnitudes_[k];
            const double mean = end > first ? sum / (end - first) : 0;
            db[b] = float(10 * std::log10(mean + 1e-12)) + bandBoost_[b];
            maxDB = std::max(maxDB, db[b]);
        }
        peakDB_ = std::max(maxDB, peakDB_ - peakFallPerFrame);
        const float floor = peakDB_ - dynamicRangeDB;
        for (int b = 0; b < bandCount; ++b)
            target[b] =
                std::pow(std::clamp((db[b] - floor) / dynamicRangeDB, 0.0f, 1.0f), levelCurve);
    }

    const double now = now_();
    std::lock_guard guard(lock_);
    for (int b = 0; b < bandCount; ++b) {
        float& level = smoothed_[b];
        // Quick to rise, slow to fall, like a meter's needle.
        if (target[b] <= level)
            level = fallKeeps * level + (1 - fallKeeps) * target[b];
        else
            level += riseTakes * (target[b] - level);
    }
    heardSound_ = heardSound_ || loud;
    lastUpdate_ = now;
}

std::vector<float> BandAnalyzer::levels(int count) const
{
    std::array<float, bandCount> copy;
    double lastUpdate;
    {
        std::lock_guard guard(lock_);
        copy = smoothed_;
        lastUpdate = lastUpdate_;
    }
    if (count < 1)
        return {};
    if (now_() - lastUpdate >= staleAfter)
        return std::vector<float>(std::size_t(count), 0.0f);
    return levelsForBars(copy, count);
}

bool BandAnalyzer::heardSound() const
{
    std::lock_guard guard(lock_);
    return heardSound_;
}

bool BandAnalyzer::takeChange(float step)
{
    std::lock_guard guard(lock_);
    bool changed = heardSound_ != heardWhenTaken_;
    for (std::size_t band = 0; band < smoothed_.size() && !changed; ++band)
        changed = std::abs(smoothed_[band] - lastTaken_[band]) >= step;
    if (changed) {
        lastTaken_ = smoothed_;
        heardWhenTaken_ = heardSound_;
    }
    return changed;
}

void BandAnalyzer::reset()
{
    filled_ = 0;
    peakDB_ = 0;
    lastTaken_.fill(0);
    heardWhenTaken_ = false;
    std::lock_guard guard(lock_);
    smoothed_.fill(0);
    lastUpdate_ = 0;
    heardSound_ = false;
}

std::vector<float> levelsForBars(const std::array<float, 24>& bands, int count)
{
    if (count < 1)
        return {};
    std::vector<float> bars(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const int first = i * 24 / count;
        const int end = std::max(first + 1, (i + 1) * 24 / count);
        bars[i] = *std::max_element(bands.begin() + first, bands.begin() + std::min(end, 24));
    }
    return bars;
}

} // namespace navro
