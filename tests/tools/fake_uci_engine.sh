#!/bin/bash
# A stand-in UCI engine for the match runner's tests: it plays the given moves in order, one a
# ply, counting the moves of the position command, and can misbehave as the runner must notice.
#   fake_uci_engine.sh MODE [SCORE] MOVE...
# MODE: play, stall (never answers go), crash (exits on go), slow (answers after 0.3 s), mute
# (never sends uciok), score (reports SCORE in centipawns).
mode=$1
shift
[ "$mode" = score ] && score=$1 && shift
moves=("$@")
while read -r line; do
    case "$line" in
    uci) echo "id name Fake $mode" && [ "$mode" != mute ] && echo uciok ;;
    isready) echo readyok ;;
    position*)
        played=()
        [[ $line == *" moves "* ]] && played=(${line#* moves })
        ply=${#played[@]} ;;
    go*)
        case "$mode" in
        stall) ;;
        crash) exit 3 ;;
        *)
            [ "$mode" = slow ] && sleep 0.3
            [ "$mode" = score ] && echo "info depth 7 score cp $score nodes 100 pv ${moves[ply]}"
            echo "bestmove ${moves[ply]}" ;;
        esac ;;
    quit) exit 0 ;;
    esac
done
