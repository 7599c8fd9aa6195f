#pragma once

#include <vector>

#include "properties/property.h"

namespace Morquil::Properties {

// The parts of the table. Names are lower case, with a point between feature and property and hyphens between words. If
// there are several of a kind, their number follows after another point, counted from 1 as on the front panel.

void AddDeviceRows(std::vector<Property>& all);
void AddSignalRows(std::vector<Property>& all);
void AddPictureRows(std::vector<Property>& all);
void AddGeometryRows(std::vector<Property>& all);
void AddAncillaryRows(std::vector<Property>& all);
void AddAudioRows(std::vector<Property>& all);

}  // namespace Morquil::Properties
