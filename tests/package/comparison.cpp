// SPDX-License-Identifier: MIT
// Compares colours of documents with plain ones in either order, which every edition of C++ must
// take to mean the same. A client's own class of colours is as good as a plain one.
#include <kpcolor.h>

#include <cstdio>

namespace {

int failures = 0;

void expect(bool holds, char const* what)
{
    if (!holds) {
        std::fprintf(stderr, "not so: %s\n", what);
        ++failures;
    }
}

class Swatch : public QColor
{
public:
    Swatch()
        : QColor(10, 20, 30)
    {
    }
};

/** `whole`: whether all of `colour` is what the plain `other` is; `seen`: whether it looks so. */
template <class Colour, class Other>
void expectComparison(
    Colour const& colour, Other const& other, bool whole, bool seen, char const* what)
{
    expect((colour == other) == whole, what);
    expect((colour != other) != whole, what);
    expect((other == colour) == seen, what);
    expect((other != colour) != seen, what);
}

} // namespace

int main()
{
    QColor const plain(10, 20, 30);
    KpColor const same(plain);
    KpColor themed;
    themed.setColorValues(plain, plain, 0, 4);
    KpColor tinted;
    tinted.setColorValues(plain, plain, 50, 0);
    KpColor referring;
    referring.setColorValues(QColor(1, 2, 3), plain, 0, 0);
    KpColor const another(QColor(10, 20, 31));
    KpColor const translucent(QColor(10, 20, 30, 40));

    expectComparison(same, plain, true, true, "a plain colour is itself");
    expectComparison(themed, plain, false, true, "a theme is seen from the left only");
    expectComparison(tinted, plain, false, true, "a tint is seen from the left only");
    expectComparison(referring, plain, false, true, "a reference is seen from the left only");
    expectComparison(another, plain, false, false, "another colour is another one");
    expectComparison(translucent, plain, false, false, "alpha counts");
    expectComparison(themed, Swatch(), false, true, "a client's class of colours is a plain one");
    expectComparison(same, Swatch(), true, true, "a client's class of colours is a plain one");
    expect(themed == KpColor(themed) && themed != same && same != themed,
        "colours of documents are compared whole");
    expect(plain == QColor(plain) && !(plain != QColor(plain)), "plain colours are compared");
    return failures == 0 ? 0 : 1;
}
