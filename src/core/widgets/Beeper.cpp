#include "core/widgets/Beeper.h"

#include "core/widgets/Tone.h"

#include <QApplication>
#include <QAudioDevice>
#include <QAudioSink>
#include <QBuffer>
#include <QMediaDevices>

// One sound output with its tone. A sound asked for while one is playing adds nothing.
struct Beeper::Player {
    explicit Player(const QAudioDevice& output) : device(output)
    {
        QAudioFormat format = device.preferredFormat();
        format.setChannelCount(1);
        format.setSampleFormat(QAudioFormat::Int16);
        if (!device.isFormatSupported(format))
            return;
        tone.setData(MessageTone(format.sampleRate()));
        sink = std::make_unique<QAudioSink>(device, format);
        // Releases the output once the tone has been played; queued, since the sink is still busy when it
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
    bool Play()
    {
        if (!sink)
            return false;
        if (sink->state() == QAudio::ActiveState)
            return true;
        sink->stop();
        tone.close();
        tone.open(QIODevice::ReadOnly);
        sink->start(&tone);
        return sink->error() == QAudio::NoError;
    }

    QAudioDevice device;
    QBuffer tone;
    std::unique_ptr<QAudioSink> sink;
};

Beeper::Beeper() = default;
Beeper::~Beeper() = default;

void Beeper::InformationBeep()
{
    // Looked up each time: a headset may have come or gone since the last sound.
    const QAudioDevice output = QMediaDevices::defaultAudioOutput();
    if (output.isNull())
        m_player.reset();
    else if (!m_player || m_player->device != output)
        m_player = std::make_unique<Player>(output);
    if (!m_player || !m_player->Play())
        QApplication::beep();
}

void Beeper::Beep()
{
    QApplication::beep();
}
