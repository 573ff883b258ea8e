#pragma once

namespace qelvane::qelutiltools {

// Offers to switch on what the user needs to see a result. Each asks only while that is off, and
// never again in the process once the user has said No. Takes the lock.

/// Box: its edges or its mesh.
void AskForEdgeOrMesh();
/// Sphere: its mesh.
void AskForMesh();
/// The surfaces of both.
void AskForShade();
/// Hiding cells.
void AskForValueBlanking();

}  // namespace qelvane::qelutiltools
