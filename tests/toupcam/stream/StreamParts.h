// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/stream/PSimProducer.h>

#include <string>
#include <vector>

/// What the parts of a stream did, in order, as short texts. Used on one thread.
using StreamSteps = std::vector<std::string>;

/// Makes pictures of one pixel and records each.
class FakeImageSource : public PSimImageSource {
public:
    explicit FakeImageSource(StreamSteps& steps)
        : m_steps(steps) {}

    void prepare(const PSimShot& /*shot*/) override {
        if (whilePreparing)
            whilePreparing();
    }
    void take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) override {
        m_steps.push_back("take " + std::to_string(frame) + " at " +
                          std::to_string(shot.resolution));
        picture.means = means;
        if (whileTaking)
            whileTaking();
    }
    bool isExposed() const override { return exposed; }
    bool isUnpaced() const override { return unpaced; }

    bool exposed = false;
    bool unpaced = true;
    PSimMeans means{100.0, 100.0, 100.0};
    std::function<void()> whilePreparing;
    std::function<void()> whileTaking;

private:
    StreamSteps& m_steps;
};

/// Records everything it is given, and is ready for this many live frames.
class FakeDelivery : public PSimDelivery {
public:
    FakeDelivery(StreamSteps& steps, int ready)
        : m_steps(steps)
        , m_ready(ready) {}

    void start(const void* /*owner*/, std::function<void()> /*wake*/) override {}
    void frame(PSimPicture& picture) override {
        --m_ready;
        m_steps.push_back("frame " + std::to_string(picture.sequence));
        if (afterFrame)
            afterFrame();
    }
    void still(PSimPicture& /*picture*/) override { m_steps.push_back("still"); }
    bool isReady() const override { return m_ready > 0; }
    void lost(std::function<void()> afterwards) override {
        m_steps.push_back("lost");
        afterwards();
    }
    void exposureChanged() override { m_steps.push_back("exposure changed"); }
    bool raw(const void* /*data*/, const BITMAPINFOHEADER* /*header*/,
             int /*isSnapshot*/) override {
        return false;
    }
    bool event(unsigned /*code*/, std::function<void()> /*afterwards*/) override { return false; }
    HRESULT pull(bool /*still*/, void* /*buffer*/, int /*bits*/,
                 ToupcamFrameInfoV2* /*info*/) override {
        return E_UNEXPECTED;
    }
    void requestStop() override {}
    void join() override {}

    std::function<void()> afterFrame;

private:
    StreamSteps& m_steps;
    int m_ready;
};

/// Records the frames it observes, and loses one that is selected.
class FakeObserver : public PSimFrameObserver {
public:
    explicit FakeObserver(StreamSteps& steps)
        : m_steps(steps) {}

    bool frameTaken(std::uint64_t taken, std::uint64_t triggered) override {
        m_steps.push_back("taken " + std::to_string(taken) + "/" + std::to_string(triggered));
        return taken != lost;
    }
    void frameDone(std::uint64_t taken) override {
        m_steps.push_back("done " + std::to_string(taken));
        if (inFrameDone)
            inFrameDone();
    }

    std::uint64_t lost = 0; ///< number of the lost frame; 0: none
    std::function<void()> inFrameDone;

private:
    StreamSteps& m_steps;
};

/// The parts of a stream without its threads: each test acts as the producing thread. The camera is
/// unpaced, so frames are due whenever the delivery is ready, whatever the time.
struct StreamParts {
    StreamParts() {
        link->source = source;
        link->observer = observer;
        link->thermal = std::make_shared<PSimThermal>(*spec);
    }

    static std::shared_ptr<PSimCameraSpec> newSpec() {
        auto spec = std::make_shared<PSimCameraSpec>();
        spec->flags = TOUPCAM_FLAG_TRIGGER_SOFTWARE;
        spec->resolutions = {{96, 64, 200.0}, {48, 32, 200.0}};
        return spec;
    }

    StreamSteps steps;
    std::shared_ptr<PSimCameraSpec> spec = newSpec();
    std::shared_ptr<FakeImageSource> source = std::make_shared<FakeImageSource>(steps);
    std::shared_ptr<FakeObserver> observer = std::make_shared<FakeObserver>(steps);
    std::shared_ptr<PSimCameraLink> link = std::make_shared<PSimCameraLink>();
    std::shared_ptr<PSimSettings> settings =
        std::make_shared<PSimSettings>(spec, std::make_shared<PSimThermal>(*spec));
    PSimStreamSchedule schedule{link, settings};
    PSimFrameFeedback feedback{source, settings, schedule};
    PSimProducer producer{link, settings, schedule, feedback};
};
