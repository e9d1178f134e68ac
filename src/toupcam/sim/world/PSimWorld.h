// SPDX-License-Identifier: MIT
#pragma once

#include <toupcam/sim/world/PSimCamera.h>
#include <toupcam/sim/world/PSimFaultPlan.h>
#include <toupcam/sim/world/PSimFaults.h>
#include <toupcam/sim/world/PSimHotPlug.h>
#include <toupcam/sim/world/PSimJournal.h>

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

/// The simulated world: the cameras of the scene, the handles given out, the journal and the
/// faults. One for the process; callable from any thread.
class PSimWorld {
public:
    /// The one instance. Created at first use with the built-in scene or the one that the
    /// environment variable names, and never destroyed: SDK threads may outlive the end of main().
    static PSimWorld& instance();

    PSimJournal& journal() { return m_journal; }
    PSimFaults& faults() { return m_faults; }
    PSimHotPlug& hotPlug() { return m_hotPlug; }

    /// The cameras plugged in now.
    std::vector<ToupcamDeviceV2> enumerate() const;
    /// A new handle, or null.
    HToupcam open(const QByteArray& id);
    /// Stops and closes; false if this is not an open handle.
    bool close(HToupcam handle);
    /// The session of an open handle; null for any other pointer.
    std::shared_ptr<PSimSession> session(HToupcam handle) const;
    /// The number of handles that are open.
    std::size_t openHandles() const;
    /// "h1", "h2", … in the order of opening; "h0" for null, "h?" for a pointer never given out.
    std::string handleName(HToupcam handle) const;

    /// Replaces the scene; cameras of the old one are unplugged first.
    void load(const PSimScene& scene);
    /// The built-in scene, an empty journal, no faults, and handles counted from h1 again.
    void reset();
    bool unplug(const QByteArray& id);
    bool plug(const QByteArray& id);
    /// Plugs the first camera with this serial number in or out whose state that changes; false if
    /// there is none. If none has it, 10 bytes or more are the beginning of a longer one.
    bool setPlugged(const QByteArray& serial, bool plugged);
    bool hold(const QByteArray& id, bool held);
    bool pushRaw(const QByteArray& id, const void* data, const BITMAPINFOHEADER* header,
                 int isSnapshot);
    bool fireEvent(const QByteArray& id, unsigned code);
    /// The camera of the scene with this id, or null.
    std::shared_ptr<PSimCamera> camera(const QByteArray& id) const;

private:
    struct Opened {
        std::shared_ptr<PSimCamera> camera;
        std::shared_ptr<PSimSession> session;
    };
    using Cameras = std::vector<std::shared_ptr<PSimCamera>>;

    PSimWorld();
    void loadFromEnvironment();
    void install(const PSimScene& scene);
    void unplugAll(const std::function<void()>& afterEach);

    PSimJournal m_journal;
    PSimFaults m_faults;
    PSimHotPlug m_hotPlug;
    std::mutex m_loading;       // serialises scene changes; taken before m_mutex
    mutable std::mutex m_mutex; // guards all below
    Cameras m_cameras;
    std::shared_ptr<PSimFaultPlan> m_plan;
    std::map<HToupcam, Opened> m_open;
    std::map<HToupcam, unsigned> m_numbers;
    std::deque<Toupcam_t> m_tokens; ///< never reused: a stale handle stays recognisable
};
