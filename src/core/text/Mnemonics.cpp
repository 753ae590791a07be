#include "text/Mnemonics.h"

#include <QHash>
#include <algorithm>

QChar mnemonicOf(const QString& text) {
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != u'&')
            continue;
        if (text[i + 1] != u'&')
            return text[i + 1].toLower();
        ++i; // "&&": a shown ampersand
    }
    return {};
}

QString withoutMnemonic(const QString& text) {
    QString shown;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] == u'&' && i + 1 < text.size())
            ++i;
        shown += text[i];
    }
    return shown;
}

namespace {
// Where a mnemonic could go in `text`, in three tiers: the text's first
// letter, the first letters of its other words, every other letter or digit.
QList<QList<qsizetype>> candidates(const QString& text) {
    QList<QList<qsizetype>> tiers(3);
    bool first = true;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (!text[i].isLetterOrNumber() || (i > 0 && text[i - 1] == u'&'))
            continue;
        const bool initial = i == 0 || !text[i - 1].isLetterOrNumber();
        tiers[initial ? (first ? 0 : 1) : 2].append(i);
        first = false;
    }
    return tiers;
}
} // namespace

QStringList withMnemonics(const QStringList& texts, int perLetter) {
    QHash<QChar, int> uses;
    QList<qsizetype> placed(texts.size(), -1); // where each text's "&" goes; -1: none yet
    QList<QList<QList<qsizetype>>> places;
    for (const QString& text : texts) {
        places.append(candidates(text));
        if (const QChar letter = mnemonicOf(text); !letter.isNull())
            ++uses[letter];
    }
    const auto needs = [&](qsizetype i) { return placed[i] < 0 && mnemonicOf(texts[i]).isNull(); };
    const auto place = [&](qsizetype i, int allowed, const QList<qsizetype>& at) {
        for (const qsizetype position : at) {
            const QChar letter = texts[i][position].toLower();
            if (uses.value(letter) < allowed) {
                ++uses[letter];
                placed[i] = position;
                return true;
            }
        }
        return false;
    };
    // Each round goes through the tiers in turn, every item in one tier
    // before any in the next, so that an item's first letter is not taken
    // by a later word of an item above it.
    for (int tier = 0; tier < 3; ++tier)
        for (qsizetype i = 0; i < texts.size(); ++i)
            if (needs(i))
                place(i, 1, places[i][tier]);
    // An item left without a letter may take one from another item that
    // has another free: "Start Selection" moves to its r so that "Paste At"
    // gets the s. Where letters may be shared, none is taken away.
    for (qsizetype i = 0; perLetter == 1 && i < texts.size(); ++i) {
        if (!needs(i))
            continue;
        const QList<qsizetype> all = places[i][0] + places[i][1] + places[i][2];
        for (qsizetype j = 0; j < texts.size() && needs(i); ++j) {
            if (placed[j] < 0)
                continue;
            const QChar held = texts[j][placed[j]].toLower();
            const auto wanted = std::find_if(all.cbegin(), all.cend(),
                                             [&](qsizetype at) { return texts[i][at].toLower() == held; });
            if (wanted == all.cend())
                continue;
            // j moves only to a letter no one uses; its old one goes to i.
            if (place(j, 1, places[j][0] + places[j][1] + places[j][2]))
                placed[i] = *wanted;
        }
    }
    // Only what is left after that shares a letter, so that sharing falls on
    // as few items as it can.
    for (int allowed = 2; allowed <= perLetter; ++allowed)
        for (int tier = 0; tier < 3; ++tier)
            for (qsizetype i = 0; i < texts.size(); ++i)
                if (needs(i))
                    place(i, allowed, places[i][tier]);
    QStringList given = texts;
    for (qsizetype i = 0; i < texts.size(); ++i)
        if (placed[i] >= 0)
            given[i].insert(placed[i], u'&');
    return given;
}
