#include "effects/EffectCatalogue.h"
#include "text/Mnemonics.h"

#include <QHash>
#include <QTest>

namespace {
// How many texts use each mnemonic; a text without one counts under null.
QHash<QChar, int> uses(const QStringList& texts) {
    QHash<QChar, int> counted;
    for (const QString& text : texts)
        ++counted[mnemonicOf(text)];
    return counted;
}
} // namespace

class tst_Mnemonics : public QObject {
    Q_OBJECT
private slots:
    void aMnemonicIsTheLetterAfterOneAmpersand() {
        QCOMPARE(mnemonicOf("Effe&cts"), QChar(u'c'));
        QCOMPARE(mnemonicOf("&Undo"), QChar(u'u'));
        QVERIFY(mnemonicOf("Bass && Treble").isNull());
        QCOMPARE(mnemonicOf("Bass && &Treble"), QChar(u't'));
        QVERIFY(mnemonicOf("Trailing &").isNull());
        QVERIFY(mnemonicOf("Plain").isNull());
        QCOMPARE(withoutMnemonic("Bass && &Treble"), QString("Bass & Treble"));
        QCOMPARE(withoutMnemonic("Entire &Track…"), QString("Entire Track…"));
    }

    void wordInitialsComeFirstAndGivenOnesStay() {
        QCOMPARE(withMnemonics({"Paste at Start", "Paste at End", "Mix &Copied Audio In"}),
                 QStringList({"&Paste at Start", "Paste &at End", "Mix &Copied Audio In"}));
        // A word's first letter taken by an item further down that already
        // has it: the next free letter of the text serves.
        QCOMPARE(withMnemonics({"Zoom In", "Zoom Out", "Zoom to &Fit"}),
                 QStringList({"&Zoom In", "Zoom &Out", "Zoom to &Fit"}));
        QCOMPARE(withMnemonics({"Stop", "Start", "Step"}), QStringList({"&Stop", "S&tart", "St&ep"}));
        QCOMPARE(withMnemonics({"Bass && Treble"}), QStringList({"&Bass && Treble"}));
    }

    void anItemWithoutAFreeLetterTakesOneFromAnItemThatHasAnother() {
        // Every letter of "Paste At" is taken; "Start Selection" gives up
        // its s for an r of its own.
        QCOMPARE(withMnemonics({"Start Selection", "Paste At", "&Paste", "Select &All", "Cu&t", "&Extend"}),
                 QStringList({"Sta&rt Selection", "Pa&ste At", "&Paste", "Select &All", "Cu&t", "&Extend"}));
        // Letters given by hand are never taken.
        QCOMPARE(withMnemonics({"Pa", "&Ap"}), QStringList({"&Pa", "&Ap"}));
        QCOMPARE(withMnemonics({"&Pa", "&Ap", "pa"}), QStringList({"&Pa", "&Ap", "pa"}));
    }

    void lettersAreSharedOnlyWhenNoneIsLeftAndNeverBeyondTheLimit() {
        // "ab" then "ba" use both letters; a third item must share one.
        QCOMPARE(withMnemonics({"ab", "ba", "ab"}), QStringList({"&ab", "&ba", "ab"}));
        QCOMPARE(withMnemonics({"ab", "ba", "ab"}, 2), QStringList({"&ab", "&ba", "&ab"}));
        QCOMPARE(withMnemonics({"a", "a", "a"}, 2), QStringList({"&a", "&a", "a"}));
        // Nothing to mark: no letter or digit.
        QCOMPARE(withMnemonics({"…", "—"}), QStringList({"…", "—"}));
    }

    void everyEffectGetsOneAndNoLetterServesMoreThanTwo() {
        QStringList titles;
        for (const EffectEntry& entry : effectCatalogue())
            titles << entry.title;
        titles << "Noise Reduction…";
        QVERIFY(titles.size() > 26);
        const QStringList marked = withMnemonics(titles, 2);
        const QHash<QChar, int> counted = uses(marked);
        QVERIFY2(!counted.contains(QChar()), qPrintable(marked.join(", ")));
        for (auto it = counted.begin(); it != counted.end(); ++it)
            QVERIFY2(it.value() <= 2, qPrintable(QString(it.key()) + ": " + marked.join(", ")));
        for (qsizetype i = 0; i < titles.size(); ++i)
            QCOMPARE(withoutMnemonic(marked[i]), titles[i]);
        // Reverse has a letter of its own: typing it opens its submenu at once.
        const QString reverse = marked[titles.indexOf("Reverse")];
        QVERIFY2(counted.value(mnemonicOf(reverse)) == 1, qPrintable(marked.join(", ")));
    }
};

QTEST_GUILESS_MAIN(tst_Mnemonics)
#include "tst_mnemonics.moc"
