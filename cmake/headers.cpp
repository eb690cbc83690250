// SPDX-License-Identifier: LGPL-3.0-or-later
//
// Nothing of its own: the target that precompiles the headers of all folders needs a source.
