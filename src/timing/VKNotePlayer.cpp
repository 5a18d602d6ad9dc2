#include "VKNotePlayer.h"

#include "Log.h"
#include "Threads.h"

#include <QFile>

#include <fluidsynth.h>

#include <cmath>
#include <dlfcn.h>
#include <mutex>

namespace {

// FluidSynth and the sound libraries it brings (PulseAudio, JACK, SDL and a
// dozen codecs) are loaded when the first note is wanted, not when Lumex
// starts: a person signing in waits for none of them.
struct FluidSynthLibrary
{
#define LUMEX_FLUID_FUNCTIONS(X)                                                                                       \
    X(delete_fluid_audio_driver)                                                                                       \
    X(delete_fluid_settings)                                                                                           \
    X(delete_fluid_synth)                                                                                              \
    X(fluid_set_log_function)                                                                                          \
    X(fluid_settings_setint)                                                                                           \
    X(fluid_settings_setnum)                                                                                           \
    X(fluid_settings_setstr)                                                                                           \
    X(fluid_synth_noteoff)                                                                                             \
    X(fluid_synth_noteon)                                                                                              \
    X(fluid_synth_program_select)                                                                                      \
    X(fluid_synth_sfload)                                                                                              \
    X(fluid_synth_write_float)                                                                                         \
    X(new_fluid_audio_driver)                                                                                          \
    X(new_fluid_settings)                                                                                              \
    X(new_fluid_synth)
#define LUMEX_FLUID_MEMBER(name) decltype(&::name) name = nullptr;
    LUMEX_FLUID_FUNCTIONS(LUMEX_FLUID_MEMBER)
    bool loaded = false;

    FluidSynthLibrary()
    {
        void *handle = ::dlopen("libfluidsynth.so.3", RTLD_NOW | RTLD_LOCAL);
        if (!handle)
            return;
        loaded = true;
#define LUMEX_FLUID_RESOLVE(name)                                                                                      \
    name = reinterpret_cast<decltype(&::name)>(::dlsym(handle, #name));                                                \
    loaded = loaded && name;
        LUMEX_FLUID_FUNCTIONS(LUMEX_FLUID_RESOLVE)
    }
};

// Loaded once, on the first thread that asks; kept for the run.
const FluidSynthLibrary &synthLibrary()
{
    static const FluidSynthLibrary library;
    return library;
}

struct SettingsDeleter
{
    void operator()(fluid_settings_t *s) const { synthLibrary().delete_fluid_settings(s); }
};
struct SynthDeleter
{
    void operator()(fluid_synth_t *s) const { synthLibrary().delete_fluid_synth(s); }
};
struct DriverDeleter
{
    void operator()(fluid_audio_driver_t *d) const { synthLibrary().delete_fluid_audio_driver(d); }
};
using SettingsPtr = std::unique_ptr<fluid_settings_t, SettingsDeleter>;
using SynthPtr = std::unique_ptr<fluid_synth_t, SynthDeleter>;
using DriverPtr = std::unique_ptr<fluid_audio_driver_t, DriverDeleter>;

constexpr int kChannel = 0;

// FluidSynth prints its own complaints to standard error; the player reports
// what matters in its one log line instead.
void silenceLibraryLog()
{
    static std::once_flag once;
    std::call_once(once, [] {
        for (int level : { FLUID_PANIC, FLUID_ERR, FLUID_WARN, FLUID_INFO, FLUID_DBG })
            synthLibrary().fluid_set_log_function(level, nullptr, nullptr);
    });
}

SettingsPtr makeSettings(int sampleRate)
{
    silenceLibraryLog();
    SettingsPtr settings(synthLibrary().new_fluid_settings());
    synthLibrary().fluid_settings_setnum(settings.get(), "synth.sample-rate", sampleRate);
    synthLibrary().fluid_settings_setint(settings.get(), "synth.reverb.active", 0);
    synthLibrary().fluid_settings_setint(settings.get(), "synth.chorus.active", 0);
    synthLibrary().fluid_settings_setint(settings.get(), "synth.polyphony", 16);
    synthLibrary().fluid_settings_setnum(settings.get(), "synth.gain", 0.6);
    synthLibrary().fluid_settings_setstr(settings.get(), "audio.driver", "pulseaudio");
    synthLibrary().fluid_settings_setstr(settings.get(), "audio.pulseaudio.media-role", "event");
    synthLibrary().fluid_settings_setint(settings.get(), "audio.period-size", 512);
    return settings;
}

// A synthesiser with the font loaded and `instrument` on the note's channel;
// null with `why` set when the font cannot be loaded.
SynthPtr makeSynth(fluid_settings_t *settings, quint32 instrument, QString *why)
{
    SynthPtr synth(synthLibrary().new_fluid_synth(settings));
    if (!synth) {
        *why = QStringLiteral("the synthesiser cannot be made");
        return {};
    }
    const QByteArray font = QFile::encodeName(VKNotePlayer::soundFontPath());
    const int fontId = synthLibrary().fluid_synth_sfload(synth.get(), font.constData(), 1);
    if (fontId == FLUID_FAILED) {
        *why = QStringLiteral("cannot load %1").arg(VKNotePlayer::soundFontPath());
        return {};
    }
    synthLibrary().fluid_synth_program_select(synth.get(), kChannel, fontId, 0, int(instrument));
    return synth;
}

} // namespace

// What the loading thread and the player share; the thread keeps its own
// reference, so a player that goes while loading never waits for it.
struct VKNotePlayer::Engine
{
    std::mutex mutex;
    SettingsPtr settings;
    SynthPtr synth;
    DriverPtr driver;
    bool ready = false;
    bool released = false;
    bool noteWanted = false;
};

VKNotePlayer::VKNotePlayer(quint32 instrument, float pitch, float velocity)
    : m_engine(std::make_shared<Engine>())
    , m_pitch(int(std::lround(pitch)))
    , m_velocity(int(std::lround(velocity)))
{
    std::shared_ptr<Engine> engine = m_engine;
    const int pitchValue = m_pitch;
    const int velocityValue = m_velocity;
    runOnWorkerThread([engine, instrument, pitchValue, velocityValue] {
        if (!synthLibrary().loaded) {
            Log::format(
                QStringLiteral("Countdown notes are silent: %@"), { QStringLiteral("FluidSynth cannot be loaded") });
            return;
        }
        SettingsPtr settings = makeSettings(44100);
        QString why;
        SynthPtr synth = makeSynth(settings.get(), instrument, &why);
        DriverPtr driver;
        if (synth) {
            driver.reset(synthLibrary().new_fluid_audio_driver(settings.get(), synth.get()));
            if (!driver)
                why = QStringLiteral("no sound server answers");
        }
        if (!driver) {
            Log::format(QStringLiteral("Countdown notes are silent: %@"), { why });
            return;
        }
        std::lock_guard lock(engine->mutex);
        if (engine->released)
            return;
        if (engine->noteWanted)
            synthLibrary().fluid_synth_noteon(synth.get(), kChannel, pitchValue, velocityValue);
        engine->settings = std::move(settings);
        engine->synth = std::move(synth);
        engine->driver = std::move(driver);
        engine->ready = true;
    });
}

VKNotePlayer::~VKNotePlayer()
{
    std::lock_guard lock(m_engine->mutex);
    m_engine->released = true;
    // The driver goes first: it calls into the synthesiser from its thread.
    m_engine->driver.reset();
    m_engine->synth.reset();
    m_engine->settings.reset();
}

std::unique_ptr<VKNotePlayer> VKNotePlayer::countdownNotePlayer()
{
    return std::make_unique<VKNotePlayer>(35, 80.0f, 64.0f);
}

void VKNotePlayer::startNote()
{
    std::lock_guard lock(m_engine->mutex);
    m_engine->noteWanted = true;
    if (m_engine->ready)
        synthLibrary().fluid_synth_noteon(m_engine->synth.get(), kChannel, m_pitch, m_velocity);
}

void VKNotePlayer::stopNote()
{
    std::lock_guard lock(m_engine->mutex);
    m_engine->noteWanted = false;
    if (m_engine->ready)
        synthLibrary().fluid_synth_noteoff(m_engine->synth.get(), kChannel, m_pitch);
}

QString VKNotePlayer::soundFontPath()
{
    return QStringLiteral("/usr/share/sounds/sf2/TimGM6mb.sf2");
}

std::vector<float> VKNotePlayer::renderNote(
    quint32 instrument, float pitch, float velocity, double seconds, int sampleRate)
{
    if (!synthLibrary().loaded)
        return {};
    SettingsPtr settings = makeSettings(sampleRate);
    QString why;
    SynthPtr synth = makeSynth(settings.get(), instrument, &why);
    if (!synth)
        return {};
    synthLibrary().fluid_synth_noteon(synth.get(), kChannel, int(std::lround(pitch)), int(std::lround(velocity)));
    const int frames = int(seconds * sampleRate);
    std::vector<float> left(frames);
    std::vector<float> right(frames);
    synthLibrary().fluid_synth_write_float(synth.get(), frames, left.data(), 0, 1, right.data(), 0, 1);
    for (int i = 0; i < frames; ++i)
        left[i] = (left[i] + right[i]) / 2;
    return left;
}
