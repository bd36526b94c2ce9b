// The tracks and slots of materials and their textures.

#include "info/FieldLister.h"
#include "info/SceneFields.h"

namespace {

/// The archive that takes the tracks of a record and ignores everything else.
class TrackGatherer {
public:
    static constexpr bool kLoads = false;

    bool Has(QSB_Version) const { return true; }
    bool IsGiven(uint8_t) const { return false; }
    template <class... Values>
    void Whole(const Values&...)
    {}
    template <class... Values>
    void Real(const Values&...)
    {}
    template <class... Values>
    void Reals(const Values&...)
    {}
    template <class... Values>
    void Color(const Values&...)
    {}
    template <class... Values>
    void Text(const Values&...)
    {}
    template <class Part>
    void Record(const Part& part)
    {
        Fields(*this, part);
    }
    template <class Part>
    void Track(const char* name, const Part& track)
    {
        tracks.push_back({name, &track});
    }

    std::vector<NamedTrack> tracks;
};

template <class Record>
std::vector<NamedTrack> GatherTracks(const Record& record)
{
    TrackGatherer gatherer;
    Fields(gatherer, record);
    return std::move(gatherer.tracks);
}

} // namespace

int32_t NamedTrack::KeyCount() const
{
    return std::visit([](const auto* any) { return any->GetKeyCount(); }, track);
}

std::vector<NamedTrack> TracksOf(const KRE_MaterialInfo& material)
{
    return GatherTracks(material);
}

std::vector<NamedTrack> TracksOf(const KRE_TextMatrixAni& animation)
{
    return GatherTracks(animation);
}

const KRE_TextMatrixAni& AnimationOf(const KRE_Texture& texture, int32_t slot)
{
    static const KRE_TextMatrixAni kStill;
    return texture.matrixAni ? texture.matrixAni[slot] : kStill;
}

void AddSlotFields(const KRE_Texture& texture, int32_t slot, FieldList& fields)
{
    FieldLister lister(fields);
    SlotFields(lister, texture.slotNames[slot], texture.slots[slot]);
    Fields(lister, AnimationOf(texture, slot));
}
