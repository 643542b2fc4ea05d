// Dialog units: the measure of in-memory dialog templates.
#pragma once

// A rectangle in dialog units.
struct DialogUnitRect {
  int x;
  int y;
  int width;
  int height;
};
