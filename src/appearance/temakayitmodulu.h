#pragma once

namespace kovanix {

// The total's two saved colour sets and its keep switch, as the screen toplamtema works them. A statement
// that fails is passed over, the next one runs.

/// Applies the first saved set to the swatches and to `toplam` of both screens. A number beyond 32 bits
/// leaves its colour as it is.
void kayit1uygula();
/// The same with the second set.
void kayit2uygula();
/// The keep switch reads "KAYDEDİYOR": toplamtemadegisken 0 and temakaydetme1 "True", in memory and in the
/// file. The total then follows a saved set or the palette, and a colour chosen by hand is gone at the next
/// start.
void temakaydediyor();
/// The keep switch reads "KAYDETMİYOR": toplamtemadegisken 1 and temakaydetme1 "False". The total then
/// follows its live colours, and every choice is stored.
void temakaydetmiyor();

}  // namespace kovanix
