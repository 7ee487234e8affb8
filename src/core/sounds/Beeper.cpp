#include "core/sounds/Beeper.h"

#include <QApplication>
#include <QAudioDevice>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>

// One sound output with what it plays.
struct Beeper::Player {
    explicit Player(const QAudioDevice& output) : device(output), format(device.preferredFormat())
    {
        format.setChannelCount(1);
        format.setSampleFormat(QAudioFormat::Int16);
        if (!device.isFormatSupported(format))
            return;
        sink = std::make_unique<QAudioSink>(device, format);
        // Releases the output once the sound has been played; queued, since the sink is still busy when it
        // says so.
        QObject::connect(
            sink.get(), &QAudioSink::stateChanged, sink.get(),
            [this] {
                if (sink->state() == QAudio::IdleState)
                    sink->stop();
                else if (sink->state() == QAudio::StoppedState && sink->error() != QAudio::NoError)
                    QApplication::beep();
            },
            Qt::QueuedConnection);
    }

    // False when the output refuses.
    bool Play(const Sound& sound)
    {
        if (!sink)
            return false;
        sink->stop();
        samples.close();
        samples.setData(SamplesOf(sound, format.sampleRate()));
        samples.open(QIODevice::ReadOnly);
        sink->start(&samples);
        return sink->error() == QAudio::NoError;
    }

    QAudioDevice device;
    QAudioFormat format;
    QBuffer samples;
    std::unique_ptr<QAudioSink> sink;
};

Beeper::Beeper() = default;
Beeper::~Beeper() = default;

void Beeper::Play(const Sound& sound)
{
    // Looked up each time: a headset may have come or gone since the last sound.
    const QAudioDevice output = QMediaDevices::defaultAudioOutput();
    if (output.isNull())
        m_player.reset();
    else if (!m_player || m_player->device != output)
        m_player = std::make_unique<Player>(output);
    if (!m_player || !m_player->Play(sound))
        QApplication::beep();
}

bool Beeper::HasOutput() const
{
    return !QMediaDevices::defaultAudioOutput().isNull();
}

void Beeper::Beep()
{
    QApplication::beep();
}
