#!/bin/bash
# A stand-in UCI engine for the match runner's tests. It plays the given moves in order, one a
# ply, counting the moves of the position command to know where the game stands, and it can
# misbehave in the ways the runner must notice.
#   fake_uci_engine.sh MODE [SCORE] MOVE...
# MODE: play, illegal (answers a1a8), stall (never answers go), crash (exits on go), slow
# (answers after 0.3 s), mute (never sends uciok), score (reports SCORE in centipawns).
# With FAKE_UCI_LOG set, every line received is appended to that file.
mode=$1
shift
if [ "$mode" = score ]; then
    score=$1
    shift
fi
moves=("$@")
ply=0
while read -r line; do
    [ -n "$FAKE_UCI_LOG" ] && echo "$line" >>"$FAKE_UCI_LOG"
    case "$line" in
    uci)
        echo "id name Fake $mode"
        [ "$mode" = mute ] || echo uciok
        ;;
    isready) echo readyok ;;
    position*)
        words=($line)
        ply=0
        for ((i = 0; i < ${#words[@]}; i++)); do
            [ "${words[i]}" = moves ] && ply=$((${#words[@]} - i - 1))
        done
        ;;
    go*)
        case "$mode" in
        stall) ;;
        crash) exit 3 ;;
        illegal) echo "bestmove a1a8" ;;
        slow)
            sleep 0.3
            echo "bestmove ${moves[ply]}"
            ;;
        score)
            echo "info depth 7 score cp $score nodes 100 pv ${moves[ply]}"
            echo "bestmove ${moves[ply]}"
            ;;
        *) echo "bestmove ${moves[ply]}" ;;
        esac
        ;;
    quit) exit 0 ;;
    esac
done
