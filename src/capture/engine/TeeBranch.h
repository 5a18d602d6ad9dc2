#pragma once

#include "GstHandles.h"

#include <memory>

// One branch off a session's tee: a request pad of the tee, the probe on it
// if any, and its link into an output's bin. The destructor takes the probe
// off and gives the pad back to the tee, which unlinks it; a buffer already
// on its way completes its push, and later ones meet an unlinked pad, which
// the tees are set to allow. Main thread only.
class TeeBranch final
{
public:
    // A new pad of `tee`, or null with `error` set.
    static std::unique_ptr<TeeBranch> request(GstElement *tee, Error *error);
    ~TeeBranch();
    TeeBranch(const TeeBranch &) = delete;
    TeeBranch &operator=(const TeeBranch &) = delete;

    GstPad *pad() const { return m_pad.get(); }
    // The probe owns `data` from here on: `destroy` frees it when the probe
    // comes off.
    void addProbe(GstPadProbeType type, GstPadProbeCallback callback, gpointer data, GDestroyNotify destroy);
    bool link(GstPad *sink, Error *error);

private:
    TeeBranch(Gst::ElementRef tee, Gst::PadRef pad);

    Gst::ElementRef m_tee;
    Gst::PadRef m_pad;
    gulong m_probe = 0;
};
