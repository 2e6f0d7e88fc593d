// Amounts in words, measured: one million random amounts spread over every order of
// magnitude up to the limit, on one core.
#include "words/Slownie.h"

#include <QElapsedTimer>
#include <QRandomGenerator>

#include <cstdio>
#include <vector>

int main()
{
    constexpr int count = 1000000;
    QRandomGenerator rng(7);
    std::vector<Money> amounts;
    amounts.reserve(count);
    for (int i = 0; i < count; ++i) {
        const int digits = 1 + rng.bounded(14);
        qint64 grosze = 0;
        for (int d = 0; d < digits; ++d)
            grosze = grosze * 10 + rng.bounded(10);
        amounts.push_back(Money::fromGrosze(grosze));
    }
    wordingOf(amounts.front()); // the word table is built once, outside the measurement

    double best = 0;
    qsizetype characters = 0;
    for (int round = 0; round < 3; ++round) {
        QElapsedTimer t;
        t.start();
        for (const Money &m : amounts)
            characters += wordingOf(m).text.size();
        const double seconds = t.nsecsElapsed() / 1e9;
        best = std::max(best, count / seconds);
        std::printf("round %d: %d amounts in %.3f s = %.2f million a second\n", round + 1, count, seconds,
                    count / seconds / 1e6);
    }
    std::printf("Slownie: best %.2f million amounts a second on one core (target at least 2): %s  [%lld characters]\n",
                best / 1e6, best >= 2e6 ? "met" : "NOT met", static_cast<long long>(characters));
    return 0;
}
