set terminal png size 900,500
set output "reports/strength/rating.png"
set title "Morvane among its opponents (UCI_Elo scale)"
set ylabel "Elo"
set style fill solid 0.6
set boxwidth 0.6
set xtics rotate by -30
set grid ytics
$data << EOD
0 "Stockfish-1950" 1950 0
1 "Morvane" 2072 26
2 "Stockfish-2100" 2100 0
3 "Stockfish-2250" 2250 0
EOD
set yrange [0:*]
plot $data using 1:3:xtic(2) with boxes notitle, "" using 1:3:4 with yerrorbars lw 2 notitle
