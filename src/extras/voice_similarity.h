// How alike two voices sound: a distance over their parameters, weighted by what an ear notices.
//
// A voice becomes a few bytes, each of which is a quantity times its weight, so that the distance
// is the sum of their differences: a unit of it is about the smallest change that is noticed when
// it is listened for. What is in them, and from where to where:
//
//   for each operator
//     strength     0 to 100  of a carrier upward, of a modulator downward, so that a carrier and a
//                            modulator are far apart. A carrier's is its loudness, halved by 10 dB
//                            (13 steps of level); a modulator's how bright it makes, the logarithm
//                            of 1 + its index in radians (12.6 at level 99, halved by 8 steps),
//                            times the strength of what it modulates. The highest of the first
//                            three levels of the envelope counts as the level.
//     sustained    0 to 50   the same at the third level of the envelope
//     frequency    +-127     24 an octave from the key, detune included; a fixed frequency counts
//                            at middle C
//     attack       0 to 60   by rate: doubled time is the same step everywhere; from 80 up, under
//                            5 milliseconds, it is heard as at once
//     decay        0 to 60   rates 2 and 3, by how far each falls
//     release      0 to 30   rate 4; 0 where level 4 lets it sound on
//     touch        +-127     velocity (0 to 28), level scaling to both sides (+-12 each), and 60
//                            for a fixed frequency, which does not follow the keys
//     rest         0 to 140  4, 8 or 12 for each of its bytes by how large it is: next to nothing,
//                            but it tells voices apart that are heard alike
//     feedback     0 to 50   as a modulator's strength; once for a voice of six operators, to both
//                            sides for the two kinds of the reface DX's
//   All but strength and rest are taken times how much of the operator is heard: of a carrier its
//   strength beside the loudest one, of a modulator its own. An operator that is silent, or that
//   modulates silence, does not count.
//
//   for the voice
//     wiring       8         for each modulation that one algorithm has and the other has not: 0
//                            for algorithms that differ in feedback alone, as 1 and 2
//     LFO          0 to 60   the larger one of vibrato and tremolo, half of it by speed
//     pitch EG     0 to 40   the largest deviation, as its root: small ones are heard at once
//     transpose    +-127     36 an octave
//     rest         0 to 130  as that of an operator
//     effects      10 to 40  of the reface DX, for each kind by its first parameter
//     portamento, mode       of the reface DX, 0 to 20 and 10
//
// Where both algorithms are wired alike, operators that could change places in them without a
// change of sound (the stacks of algorithm 5) are compared in the order that fits best.
//
// The strengths follow from what the instruments make of a level, the other weights from how large
// a step an ear takes for a change of the same size. They are held by a test: of voices with a few
// small edits at least 99 of 100 find the unedited one as the nearest among 10,000.
#pragma once

#include "extras/dump_voice.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tonewright {

// Made once and kept in the archive. The first byte says the family, others are never alike; the
// second one is the algorithm.
constexpr std::size_t VoiceFeatureSize = 56; // bytes
using VoiceFeatures = std::array<std::uint8_t, VoiceFeatureSize>;
// Changes whenever the features of a voice would be other bytes: an archive makes them anew then.
constexpr int VoiceFeatureVersion = 1;

VoiceFeatures FeaturesOf(const DumpVoice &voice);

// 0 for voices that are heard alike, growing; infinite for voices of different families. The same
// both ways.
float DistanceOf(const VoiceFeatures &one, const VoiceFeatures &other);

// The distances of many from one, when those beyond a limit do not matter.
struct VoiceComparison {
    VoiceFeatures features;
    std::vector<VoiceFeatures> arrangements; // of the operators, as they are among them
};
VoiceComparison CompareWith(const VoiceFeatures &features);
// As DistanceOf, or anything above the limit where it is above.
float DistanceWithin(const VoiceComparison &comparison, const VoiceFeatures &other, float limit);

} // namespace tonewright
