#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "FileRecord.h"

namespace velmora {

/// What the writer says of a scene, by which its own are known again.
inline constexpr std::string_view writtenInfo =
    "VRML97: The Virtual Reality Modeling Language International Standard ISO/IEC 14772";

/// Looks at the text between the face sets of a VRML file, of which the reader takes nothing: which words in it place,
/// colour or name the face sets, or are shapes of other kinds. It follows words, numbers, strings and comments, and no
/// structure beyond the name of the last node.
class VrmlScene {
public:
    /// The next character.
    void take(char c);
    /// Characters one behind the other.
    void take(std::string_view text);
    /// A field of a face set.
    void takeFieldOfFaces(std::string_view name);
    /// The text is interrupted by a face set: what was begun has ended.
    void endNode();

    /// The title of a scene that the writer wrote: that of its model. Titles of others are their own, and are told.
    const std::string& title() const { return title_; }
    /// Tells what of all this the model has not.
    void note(FileRead& record) const;

private:
    void takeOfString(char c);
    void takeOfWorldInfo();
    void endToken();
    void takeWord();
    void takeGeometry(const std::string& word);
    void takeNumber(std::string_view text);
    void judgeValues();

    std::string token_;
    std::string previous_; // the word before the one in hand
    std::string text_;     // of the string in hand
    std::string title_;
    std::string node_;  // the last word with a capital in front of a bracket
    std::string field_; // the field whose numbers are being taken; empty for none
    std::vector<double> values_;
    char last_ = ' ';
    bool inComment_ = false;
    bool inString_ = false;
    bool awaitsShape_ = false; // the word for a shape comes next
    bool isOurs_ = false;      // the writer wrote it
    std::int64_t placings_ = 0;
    std::int64_t colours_ = 0;
    std::int64_t textures_ = 0;
    std::int64_t names_ = 0;
    std::int64_t uses_ = 0;
    std::int64_t files_ = 0;
    std::int64_t surroundings_ = 0;
    std::int64_t titles_ = 0;
    std::int64_t prototypes_ = 0;
    std::int64_t turned_ = 0;
    std::set<std::string> otherShapes_;
    std::set<std::string> otherNodes_;
};

} // namespace velmora
