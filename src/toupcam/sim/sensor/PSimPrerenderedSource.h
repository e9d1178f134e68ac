// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/sensor/PSimImageSource.h>

#include <map>
#include <mutex>

/// Ready-made pictures: exact, without noise, the same at any exposure. Unless a setting changes
/// it, a frame costs only a pointer; the memory exists as long as the source.
class PSimPrerenderedSource : public PSimImageSource {
public:
    explicit PSimPrerenderedSource(std::shared_ptr<const PSimCameraSpec> spec)
        : m_spec(std::move(spec)) {}

    /// Makes all pictures of this resolution.
    void prepare(const PSimShot& shot) override { picturesFor(shot, toForm(shot)); }
    void take(const PSimShot& shot, std::uint64_t frame, PSimPicture& picture) override;
    bool isExposed() const override { return false; }

protected:
    /// The number of different pictures.
    virtual unsigned count() const = 0;
    /// Paints picture `index` into out, which is all zero.
    virtual void paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const = 0;

    /// Whether pictures are delivered unchanged, whatever the settings.
    virtual bool isFixed() const { return false; }

    const PSimCameraSpec& spec() const { return *m_spec; }

private:
    struct Ready {
        std::vector<std::uint8_t> pixels;
        PSimMeans means;
    };
    using Pictures = std::vector<Ready>;

    PSimPicture toForm(const PSimShot& shot) const;
    bool isAsItIs(const PSimShot& shot, const PSimPicture& form) const;
    Ready make(unsigned index, const PSimPicture& form) const;

    const Pictures& picturesFor(const PSimShot& shot, const PSimPicture& form);

    std::shared_ptr<const PSimCameraSpec> m_spec;
    std::mutex m_mutex; // guards m_pictures while they are made
    std::map<std::pair<unsigned, bool>, Pictures> m_pictures; // by resolution and byte order
};

/// A red, a green and a blue patch from left to right on black, each half as wide as a third of the
/// picture and half as high as the picture, in the middle of its third. On a grey camera they have
/// the grey values 87, 127 and 39.
class PSimPatchesSource : public PSimPrerenderedSource {
public:
    using PSimPrerenderedSource::PSimPrerenderedSource;

protected:
    unsigned count() const override { return 1; }
    void paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const override;
};

/// A ring of grey ramps; the first byte of each is its place in the ring. No setting changes them.
class PSimRingSource : public PSimPrerenderedSource {
public:
    using PSimPrerenderedSource::PSimPrerenderedSource;

    bool isUnpaced() const override { return spec().source.unpaced; }

protected:
    unsigned count() const override { return spec().source.ringFrames; }
    bool isFixed() const override { return true; }
    void paint(unsigned index, const PSimPicture& form, std::uint8_t* out) const override;
};
