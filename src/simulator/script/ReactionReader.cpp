#include "simulator/script/ReactionReader.h"

namespace sim {

namespace {

constexpr int longestMs = 3600 * 1000;

// The behaviour of the node, or of `usual` when it has none, with the times given beside it.
Reaction ReadReactionFields(const JsonNode& node, const Reaction& usual)
{
    Reaction reaction = usual;
    if (const auto behaviour = node.Find("behaviour"))
        reaction = Reaction::Of(ReadBehaviour(*behaviour));
    if (const auto react = node.Find("reactAfterMs"))
        reaction.reactAfter = Milliseconds(react->Integer(0, longestMs));
    if (const auto answer = node.Find("answerAfterMs"))
        reaction.answerAfter = Milliseconds(answer->Integer(0, longestMs));
    if (const auto talk = node.Find("talkMs"))
        reaction.talk = Milliseconds(talk->Integer(0, longestMs));
    return reaction;
}

Reaction ReadReactionOr(const JsonNode& node, const Reaction& usual)
{
    if (node.IsText())
        return Reaction::Of(ReadBehaviour(node));
    node.RequireMembers({"behaviour", "reactAfterMs", "answerAfterMs", "talkMs"});
    return ReadReactionFields(node, usual);
}

} // namespace

Behaviour ReadBehaviour(const JsonNode& node)
{
    const std::string word = node.Text();
    const auto behaviour = BehaviourOfWord(word);
    if (!behaviour)
        node.Fail("unknown behaviour \"" + word + "\"; there are " + BehaviourWords());
    return *behaviour;
}

Reaction ReadReaction(const JsonNode& node)
{
    return ReadReactionOr(node, Reaction::Of(Behaviour::Answers));
}

Reactions ReadReactions(const JsonNode& member)
{
    const Reaction own = ReadReactionFields(member, Reaction::Of(Behaviour::Answers));
    Reactions reactions = Reactions::All(own);
    if (const auto status = member.Find("status"))
        reactions.status = ReadReactionOr(*status, own);
    if (const auto text = member.Find("text"))
        reactions.text = ReadReactionOr(*text, own);
    if (const auto call = member.Find("call"))
        reactions.call = ReadReactionOr(*call, own);
    if (const auto regroup = member.Find("regroup"))
        reactions.regroup = ReadReactionOr(*regroup, own);
    return reactions;
}

} // namespace sim
