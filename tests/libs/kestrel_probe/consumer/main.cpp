#include <PivotFit.h>
#include <PointCapture.h>
#include <TipSolver.h>
#include <Verdict.h>
#include <cmath>
#include <cstdio>
#include <vector>

// A tool that turns about its resting tip, which it believes (0.3, -0.4, 0) mm away from where it
// is.
static kestrel_probe::Pose poseAt(double seconds) {
    const double angle = 0.4;
    const double turn = 2.0 * 3.14159265358979 * seconds / 2.0;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double x = std::cos(turn);
    const double y = std::sin(turn);
    // Tilted by `angle` about the axis (x, y, 0).
    const double r[3][3] = {{c + x * x * (1 - c), x * y * (1 - c), y * s},
                            {x * y * (1 - c), c + y * y * (1 - c), -x * s},
                            {-y * s, x * s, c}};
    const double error[3] = {0.3, -0.4, 0.0};
    kestrel_probe::Pose pose{};
    for (int row = 0; row < 3; ++row) {
        pose.position[row] = 100.0;
        for (int column = 0; column < 3; ++column) {
            pose.rotation[3 * column + row] = r[row][column];
            pose.position[row] -= r[row][column] * error[column];
        }
    }
    pose.seconds = seconds;
    return pose;
}

int main() {
    kestrel_probe::PivotFit fit;
    std::vector<kestrel_probe::Pose> poses;
    for (int i = 0; i < 600; ++i) {
        poses.push_back(poseAt(i / 60.0));
        fit.add(poses.back());
    }
    const auto result = fit.solve();
    if (!result) {
        std::puts("no tip");
        return 1;
    }
    const double* tip = result->tip;
    std::printf("tip %.2f %.2f %.2f mm\n", tip[0], tip[1], tip[2] + 0.0);
    const double error = std::sqrt(tip[0] * tip[0] + tip[1] * tip[1] + tip[2] * tip[2]);
    const auto verdict = kestrel_probe::judge(error, result->radius95, 0.3);
    std::printf("conforms: %s\n", verdict == kestrel_probe::Verdict::Conforms ? "yes" : "no");
    const auto plain = kestrel_probe::solveTip(poses);
    std::printf("plain fit %.2f %.2f mm\n", plain.tip[0], plain.tip[1]);
    return 0;
}
