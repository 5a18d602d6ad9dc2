#include "TeeBranch.h"

std::unique_ptr<TeeBranch> TeeBranch::request(GstElement *tee, Error *error)
{
    Gst::PadRef pad(tee ? gst_element_request_pad_simple(tee, "src_%u") : nullptr, Gst::Ref::Adopt);
    if (!pad) {
        if (error)
            *error = Gst::coreError(GST_CORE_ERROR_PAD, QStringLiteral("The capture stream cannot take a branch."));
        return nullptr;
    }
    return std::unique_ptr<TeeBranch>(new TeeBranch(Gst::ElementRef(tee, Gst::Ref::Add), std::move(pad)));
}

TeeBranch::TeeBranch(Gst::ElementRef tee, Gst::PadRef pad)
    : m_tee(std::move(tee))
    , m_pad(std::move(pad))
{ }

TeeBranch::~TeeBranch()
{
    if (m_probe)
        gst_pad_remove_probe(m_pad.get(), m_probe);
    gst_element_release_request_pad(m_tee.element(), m_pad.get());
}

void TeeBranch::addProbe(GstPadProbeType type, GstPadProbeCallback callback, gpointer data, GDestroyNotify destroy)
{
    if (m_probe)
        gst_pad_remove_probe(m_pad.get(), m_probe);
    m_probe = gst_pad_add_probe(m_pad.get(), type, callback, data, destroy);
}

bool TeeBranch::link(GstPad *sink, Error *error)
{
    return Gst::link(m_pad.get(), sink, error);
}
