#pragma once

// The toolbar pictures and the program's icon are compiled into the window library; a static
// library must register them once before the first QIcon(":/icons/...") is made.
// Paths: :/icons/new.svg, open.svg, print.svg, hhc.svg, align.svg, redscreen.svg, tavorine.svg.
void InitIconResources();
