#pragma once

#include "KestrelDatatypes.h"

#include <cstddef>
#include <vector>

namespace KestrelSDK_Parse {
class LineReader;
}

/// Turns the controller's data lines, one at a time, into tables of tracked objects.
///
/// A frame is startFrame(), parseLine() for each of its lines, endFrame(); single lines without the
/// frame calls update the tables as well. Tables persist from frame to frame and allocate only when
/// a count grows. A line may hold anything: none makes the parser throw or leave its tables. A line
/// that asks for more than 65535 records of a kind is rejected and changes no table and no count; a
/// line that fails otherwise keeps what it filled so far. Numbers are read locale-free; what they
/// mean (mm, mm², rotations column by column) is said in KestrelDatatypes.h. Not thread-safe; one
/// thread at a time.
class KestrelParser {
public:
    KestrelParser();
    KestrelParser(const KestrelParser&) = default;
    KestrelParser& operator=(const KestrelParser&) = default;
    /// Takes everything over without copying a record. `other` is as newly made and may be used on.
    KestrelParser(KestrelParser&& other) noexcept;
    KestrelParser& operator=(KestrelParser&& other) noexcept;
    virtual ~KestrelParser();

    /// Forgets frame counter, time stamp and the counts of calibrated objects; keeps the tables.
    virtual void startFrame();
    /// Brings the tables of bodies and hands to the counts of calibrated objects, if there were
    /// any.
    virtual void endFrame();
    /// Reads one NUL-terminated line. False when the line is malformed or `line` is null; true for
    /// lines of an unknown kind, which change nothing. Moves `*line` behind the last item read and
    /// never writes to the text.
    virtual bool parseLine(char** line);
    /// The same for text that is const; where reading stopped is not told. By way of the operation
    /// above, also when a parser that derives from this one has another.
    bool parseLine(const char* line);
    bool parseLine(std::nullptr_t); ///< no line: false

    unsigned int getFrameCounter() const; ///< 0 when unknown
    double getTimeStamp() const;          ///< in seconds; -1 when unknown

    /// @name Records
    /// @{

    /// Counts of valid records. A record getter returns null for an index outside its count; the
    /// record stays the parser's and is valid until the next line or frame call.
    int getNumBody() const;
    int getNumWand() const;
    int getNumMeaTool() const;
    int getNumMeaRef() const;
    int getNumHand() const;
    int getNumHuman() const;
    int getNumInertial() const;
    int getNumMarker() const;
    KestrelSDK_Datatypes::Kestrel_Body_Type_d* getBody(int index);
    const KestrelSDK_Datatypes::Kestrel_Body_Type_d* getBody(int index) const;
    KestrelSDK_Datatypes::Kestrel_Wand_Type_d* getWand(int index);
    const KestrelSDK_Datatypes::Kestrel_Wand_Type_d* getWand(int index) const;
    KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d* getMeaTool(int index);
    const KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d* getMeaTool(int index) const;
    KestrelSDK_Datatypes::Kestrel_MeaRef_Type_d* getMeaRef(int index);
    const KestrelSDK_Datatypes::Kestrel_MeaRef_Type_d* getMeaRef(int index) const;
    KestrelSDK_Datatypes::Kestrel_Hand_Type_d* getHand(int index);
    const KestrelSDK_Datatypes::Kestrel_Hand_Type_d* getHand(int index) const;
    KestrelSDK_Datatypes::Kestrel_Human_Type_d* getHuman(int index);
    const KestrelSDK_Datatypes::Kestrel_Human_Type_d* getHuman(int index) const;
    KestrelSDK_Datatypes::Kestrel_Inertial_Type_d* getInertial(int index);
    const KestrelSDK_Datatypes::Kestrel_Inertial_Type_d* getInertial(int index) const;
    KestrelSDK_Datatypes::Kestrel_Marker_Type_d* getMarker(int index);
    const KestrelSDK_Datatypes::Kestrel_Marker_Type_d* getMarker(int index) const;
    /// @}

protected:
    /// @name State
    /// @{

    /// What the getters give, for parsers that derive from this one.
    unsigned int act_framecounter = 0;
    double act_timestamp = -1.0;
    int act_num_body = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Body_Type_d> act_body;
    int act_num_wand = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Wand_Type_d> act_wand;
    int act_num_meatool = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_MeaTool_Type_d> act_meatool;
    int act_num_mearef = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_MeaRef_Type_d> act_mearef;
    int act_num_hand = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Hand_Type_d> act_hand;
    int act_num_human = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Human_Type_d> act_human;
    int act_num_inertial = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Inertial_Type_d> act_inertial;
    int act_num_marker = 0;
    std::vector<KestrelSDK_Datatypes::Kestrel_Marker_Type_d> act_marker;
    /// @}
    int loc_num_bodycal = -1; ///< calibrated bodies; -1 when the frame does not tell
    int loc_num_handcal = -1; ///< calibrated hands; -1 when the frame does not tell
    int loc_num_wand1 = 0;    ///< Wand devices of a "6df" line
    int loc_num_meatool = 0;  ///< Measurement Tools of a "6dmt" line

private:
    using Reader = KestrelSDK_Parse::LineReader;
    struct LineKind;

    void swap(KestrelParser& other) noexcept;
    bool parseKnownLine(char*& line);
    bool parseFrameCounter(Reader& line);
    bool parseTimeStamp(Reader& line);
    bool parseCalibratedBodies(Reader& line);
    bool parseCalibratedHands(Reader& line);
    bool parseBodies(Reader& line);
    bool parseWands(Reader& line);
    bool parseWands2(Reader& line);
    bool parseMeaTools(Reader& line);
    bool parseMeaTools2(Reader& line);
    bool parseMeaRefs(Reader& line);
    bool parseHands(Reader& line);
    bool parseHumans(Reader& line);
    bool parseInertials(Reader& line);
    bool parseMarkers(Reader& line);
    bool parseWand2(Reader& line, int index);
    bool parseHand(Reader& line);

    // The tables as they were before the line in hand, for lines whose entries grow them: such a
    // line may turn out to ask for too much only at its last entry.
    std::vector<KestrelSDK_Datatypes::Kestrel_Body_Type_d> m_bodyBefore;
    std::vector<KestrelSDK_Datatypes::Kestrel_Hand_Type_d> m_handBefore;
    std::vector<KestrelSDK_Datatypes::Kestrel_Inertial_Type_d> m_inertialBefore;
};
