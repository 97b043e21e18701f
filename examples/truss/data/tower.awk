# A lattice tower of `bays` square bays as a model for truss: awk -v bays=1000 -f tower.awk
BEGIN {
    for (i = 0; i <= bays; ++i)
        for (c = 0; c < 4; ++c)
            printf "node,n%d_%d,%g,%g,%g\n", i, c, (c == 1 || c == 2 ? 1 : 0), (c >= 2 ? 1 : 0), i
    for (i = 0; i < bays; ++i)
        for (c = 0; c < 4; ++c) {
            d = (c + 1) % 4
            printf "bar,leg%d_%d,n%d_%d,n%d_%d,1e-3,2.1e11,7850\n", i, c, i, c, i + 1, c
            printf "bar,brace%d_%d,n%d_%d,n%d_%d,5e-4,2.1e11,7850\n", i, c, i, c, i + 1, d
            printf "bar,tie%d_%d,n%d_%d,n%d_%d,5e-4,2.1e11,7850\n", i, c, i + 1, c, i + 1, d
        }
    for (i = 0; i < bays; ++i)
        printf "bar,cross%d,n%d_0,n%d_2,5e-4,2.1e11,7850\n", i, i + 1, i + 1
    for (c = 0; c < 4; ++c)
        printf "support,n0_%d,1,1,1\n", c
    printf "load,n%d_0,1000,0,0\n", bays
}
