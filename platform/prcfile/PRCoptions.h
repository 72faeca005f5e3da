#pragma once

namespace prc
{

/// How the surfaces of a group are to be tessellated and compressed.
///
/// The hints concern geometry that a file would tessellate itself. Ready tessellations are stored exactly as they are
/// given, whatever the options of their group say: open meshes stay open, shared points stay shared.
///
/// The order of the fields is a promise to callers, who may initialise the record positionally.
struct PRCoptions
{
    double compression = 0.0;      ///< 0 asks for lossless storage.
    double granularity = 0.0;      ///< size of the finest detail worth keeping, in the units of the group.
    bool closed = false;           ///< the surfaces of the group enclose a volume.
    bool tess = false;             ///< store tessellations instead of exact surfaces.
    bool do_break = false;         ///< split every tessellation into one part for each face.
    bool no_break = false;         ///< never split a tessellation.
    double crease_angle = 25.8419; ///< in degrees; edges sharper than this stay sharp when normals are computed.
};

} // namespace prc
