#pragma once

/// Lets screen readers meet the spans of link labels as links that can be pressed. Once is enough.
void TeachLinksToScreenReaders();
