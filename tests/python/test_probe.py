"""The tip of a probe."""

import numpy as np
import pytest
from samples import pivot, pivot_recording

from kestrel_sdk import PivotFit, Verdict, judge, read_recording

TIP = np.array([1.5, -2.5, 180.0])


def fitted(*arguments, **options):
    fit = PivotFit()
    for seconds, xyz, R in zip(*pivot(*arguments, **options)):
        fit.add(xyz, R, seconds)
    return fit


def test_the_tip_of_a_motion_without_noise_is_found_exactly():
    fit = fitted(TIP)
    result = fit.solve()
    np.testing.assert_allclose(result.tip, TIP, atol=1e-6)
    np.testing.assert_allclose(result.resting_point, [100, 200, 300], atol=1e-6)
    assert result.covariance.shape == (3, 3) and result.residual < 1e-6 and result.radius95 < 1e-6
    assert len(fit) == 600 and fit.duration == pytest.approx(5.99) and 0.03 < fit.coverage < 0.2
    assert not fit.too_fast


def test_noise_makes_an_uncertainty_that_holds_the_truth():
    result = fitted(TIP, 0.1).solve()
    assert 0.05 < result.residual < 0.3 and 0 < result.radius95 < 1
    assert np.linalg.norm(result.tip - TIP) < result.radius95
    np.testing.assert_allclose(result.covariance, result.covariance.T)
    assert not result.slipped


def test_a_tip_that_slips_is_told():
    fit = PivotFit()
    for seconds, xyz, R in zip(*pivot(TIP)):
        fit.add(xyz + (4 if seconds > 3 else 0), R, seconds)
    result = fit.solve()
    assert result.slipped and result.slip > 3


def test_poses_of_a_recording_are_taken_at_once(tmp_path):
    poses = read_recording(pivot_recording(tmp_path / "a", TIP, 0.0)).poses("M1")
    poses["xyz"][10] = np.nan  # not tracked
    fit = PivotFit()
    fit.add_poses(poses)
    assert len(fit) == len(poses) - 1
    np.testing.assert_allclose(fit.solve().tip, TIP, atol=1e-6)
    fit.clear()
    assert len(fit) == 0


def test_too_little_motion_has_no_result():
    fit = PivotFit()
    assert fit.solve() is None and not fit.weakest_axis.any()
    for i in range(500):
        fit.add((1, 2, 3), np.eye(3), i / 100)
    assert fit.solve() is None and fit.coverage < 0.002 and fit.weakest_axis.shape == (3,)


def test_what_is_no_pose_is_as_if_it_had_not_come():
    fit = PivotFit()
    fit.add((1, 2, 3), np.eye(3), 1.0)
    fit.add((1, 2, np.inf), np.eye(3), 2.0)
    fit.add((1, 2, 3), 2 * np.eye(3), 3.0)
    fit.add((1, 2, 3), np.eye(3), 1.0)
    assert len(fit) == 1


@pytest.mark.parametrize("xyz, R, seconds", [
    ((1, 2), np.eye(3), 0), ((1, 2, 3), np.eye(2), 0), ((1, 2, 3), np.ones(9), 0), (1, np.eye(3), 0),
    ((1, 2, 3), np.eye(3), [1, 2]), ("abc", np.eye(3), 0),
])
def test_another_shape_is_refused(xyz, R, seconds):
    with pytest.raises(ValueError):
        PivotFit().add(xyz, R, seconds)


@pytest.mark.parametrize("error, radius, verdict", [
    (0.3, 0.2, Verdict.CONFORMS), (0.3, 0.25, Verdict.UNDECIDED), (0.8, 0.2, Verdict.DOES_NOT_CONFORM),
    (0.7, 0.2, Verdict.UNDECIDED), (float("nan"), 0.2, Verdict.UNDECIDED), (-0.1, 0.2, Verdict.UNDECIDED),
])
def test_the_verdict_has_the_uncertainty_in_it(error, radius, verdict):
    assert judge(error, radius, 0.5) is verdict
