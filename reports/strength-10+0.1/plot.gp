set terminal png size 900,500 noenhanced
set output "reports/strength-10+0.1/rating.png"
set title "Morvane among its opponents (UCI_Elo scale, 95% bars)"
set ylabel "Elo"
set xtics rotate by -30
set grid ytics
set offsets 0.5, 0.5, 100, 100
$data << EOD
0 "Stockfish-2100" 2100 0
1 "Glaurung" 2111 51
2 "Toga2" 2125 50
3 "Morvane" 2250 25
4 "Stockfish-2250" 2250 0
5 "Stockfish-2400" 2400 0
6 "Ethereal" 2538 60
EOD
plot $data using 1:3:4:xtic(2) with yerrorbars pt 7 ps 1.5 lw 2 notitle
