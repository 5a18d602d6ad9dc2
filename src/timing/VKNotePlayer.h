#pragma once

#include <QString>

#include <memory>
#include <vector>

// One sustained note on the software synthesiser (FluidSynth with a General
// MIDI sound font), played through the desktop's sound server. Loading the
// font and reaching the sound server happen on a worker thread, so neither
// ever holds up the caller; a note asked for before they are ready sounds as
// soon as they are. Without a sound font or a sound server the player stays
// silent and says so in one log line. Used on the main thread.
class VKNotePlayer final
{
public:
    VKNotePlayer(quint32 instrument, float pitch, float velocity);
    ~VKNotePlayer();
    VKNotePlayer(const VKNotePlayer &) = delete;
    VKNotePlayer &operator=(const VKNotePlayer &) = delete;

    // Program 35, note 80, velocity 64: the countdown's note.
    static std::unique_ptr<VKNotePlayer> countdownNotePlayer();

    void startNote();
    void stopNote();

    // The font every player loads.
    static QString soundFontPath();

    // Renders `seconds` of the note through a synthesiser set up as a
    // player's, without a sound device: mono samples at `sampleRate`. Empty
    // when the sound font cannot be loaded.
    static std::vector<float> renderNote(
        quint32 instrument, float pitch, float velocity, double seconds, int sampleRate = 44100);

    struct Engine;

private:
    std::shared_ptr<Engine> m_engine;
    int m_pitch;
    int m_velocity;
};
