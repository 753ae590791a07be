#include "ExportLists.h"

#include <QComboBox>
#include <QFormLayout>

ExportLists addExportLists(QWidget* owner, QFormLayout* form) {
    auto addList = [&](const char* name, const QString& label, const QStringList& items) {
        auto* list = new QComboBox(owner);
        list->setObjectName(QLatin1String(name));
        list->setMinimumWidth(140);
        list->addItems(items);
        form->addRow(label, list);
        return list;
    };
    ExportLists lists{addList("comboFormat", QObject::tr("Format:"), exporting::formats()),
                      addList("comboSampleRate", QObject::tr("Sample rate (Hz):"), exporting::sampleRates()),
                      addList("comboChannels", QObject::tr("Channels:"), exporting::channels()),
                      addList("comboBitrate", QObject::tr("Bit rate (M4A, MP3):"), exporting::bitRates())};
    lists.setChoice({});
    return lists;
}

exporting::Choice ExportLists::choice() const {
    return {format->currentIndex(), sampleRate->currentIndex(), channels->currentIndex(),
            bitRate->currentIndex()};
}

void ExportLists::setChoice(const exporting::Choice& choice) {
    format->setCurrentIndex(choice.format);
    sampleRate->setCurrentIndex(choice.sampleRate);
    channels->setCurrentIndex(choice.channels);
    bitRate->setCurrentIndex(choice.bitRate);
}
