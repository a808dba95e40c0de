// The stable codes of the data problems a drawing can have (AuditIssue::code). The DXF reader
// finds and repairs them while loading; the audit finds the same problems in a database and
// uses the same codes, so scripts and tests can rely on one list.
#pragma once

namespace cad::db {

// An object carried a handle that an earlier object of the file had: the later one gets a new
// handle. References by that handle keep naming the first object.
inline constexpr int kIssueDuplicateHandle = 101;
// An object of a file that has handles (R13 and later) carried none, or one that does not
// parse: it gets a new handle.
inline constexpr int kIssueMissingHandle = 102;
// An object's owner names no object (or one that was dropped), an object listed by a
// container names no owner, or its owner does not list it while another container does. The
// owner becomes the container the object was found in (the table, the block, the dictionary
// that lists it); an object in OBJECTS whose owner names nothing and that nothing lists is
// dropped (erased), as nothing could reach it.
inline constexpr int kIssueDanglingOwner = 103;
// Following owners from an object comes back to it. The chain is cut at that object: it
// leaves the dictionary of the cycle that lists it and becomes an entry of the named-objects
// dictionary, under the key it had.
inline constexpr int kIssueOwnerCycle = 104;
// A dictionary entry names no object: the entry is removed.
inline constexpr int kIssueDanglingDictionaryEntry = 105;
// An entity or record names a layer, linetype, text style or dimension style that the tables
// do not hold: a record of that name is made with default properties.
inline constexpr int kIssueMissingSymbol = 106;
// A block reference names a block that is not defined. An empty block definition of that name
// is made, so the reference, its attributes and everything pointing at it survive and the
// drawing stays consistent; the user sees nothing drawn and can redefine the block.
inline constexpr int kIssueMissingBlock = 107;
// Something every drawing has is missing: the named-objects dictionary, ACAD_GROUP,
// ACAD_LAYOUT, a symbol table or one of its standard records, *Model_Space or *Paper_Space,
// a layout of a layout block, the BLOCK_RECORD of a block. It is made.
inline constexpr int kIssueMissingStandardObject = 108;
// A table holds a second record of a name, a record of another table's kind, or a record
// without a name (text styles of shape files excepted): it is dropped.
inline constexpr int kIssueBadTableRecord = 109;
// An ATTRIB, VERTEX or SEQEND that follows no INSERT or POLYLINE, an object among the
// entities, or an entity or table record among the objects: it is dropped.
inline constexpr int kIssueStraySubentity = 110;
// A link holds something that is not a handle (a name where a handle belongs): the link is
// left empty.
inline constexpr int kIssueUnreadableLink = 111;

// The codes below are found by the audit (Audit.h) in a database as it stands in memory.

// An object's owner exists but does not list it among what it holds. The fix gives the object
// to the container that does list it, or lists an entity in the block its owner names.
inline constexpr int kIssueOwnerDoesNotList = 112;
// An object that must have an owner (everything but the named-objects dictionary and the
// symbol tables) has none. The fix gives it to the container that lists it.
inline constexpr int kIssueMissingOwner = 113;
// One object is listed by two containers, or twice by one: it would be written twice under
// one handle. Which listing is right cannot be told, so it is not fixed.
inline constexpr int kIssueListedTwice = 114;
// A reference (pointer, persistent reactor, or an entry of a block, table or entity) names no
// object. Pointers and reactors are cleared; a symbol reference is 106.
inline constexpr int kIssueDanglingReference = 115;
// A hard pointer of a live object names an erased object, which is not written: in the file it
// would name nothing. The pointer is cleared.
inline constexpr int kIssuePointerToErased = 116;
// A layout and its block record do not name each other. Fixed when one side of the link is
// missing and the other side tells what it should be.
inline constexpr int kIssueLayoutLink = 117;
// An object of a DWG file whose type the reader does not decode: it is left out of the
// drawing, counted per type in one issue each.
inline constexpr int kIssueNotReadFromDwg = 118;
// A DWG file's section or object whose check value does not match what it holds: it is read
// as it stands (the file may have been damaged), once per file with the count.
inline constexpr int kIssueDwgCheckValue = 119;

}  // namespace cad::db
