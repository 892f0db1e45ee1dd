"""The one rate solver: Newton steps in u = ln(1 + x) for a rate x > -1."""
from ieee import div, fmax, is_nan, maximum
from kernels import zexpm1

STEP_LIMIT = 354.891356446692           # half of the largest argument of exp
SNAP_LIMIT = 1.053671212772351e-08      # the square root of 2^-53
RESIDUAL_UNIT = 1.110223024625157e-15
LOWEST_RATE = -0.9999999


class NewtonProblem:
    """tolerance, limit, objective, start and residual scale come from the caller; x is the root on success.

    objective(problem) reads problem.x and problem.user_data, sets problem.value and problem.derivative (by the rate x),
    and returns 0, or non-zero when it refuses the rate."""

    def __init__(self, tolerance, max_iterations, objective, start, residual_scale, user_data):
        self.tolerance = tolerance
        self.max_iterations = max_iterations
        self.objective = objective
        self.user_data = user_data
        self.derivative = 0.0
        self.value = 0.0
        self.start = start
        self.x = 0.0
        self.residual_scale = residual_scale


def call_special_newton(problem):
    """0: converged, the root is in problem.x. 1: failed."""
    iteration = 0
    problem.x = problem.start
    while True:
        if problem.objective(problem) != 0:
            return 1
        x = problem.x
        step = div(0.0 - problem.value, (x + 1.0) * problem.derivative)
        if step > STEP_LIMIT:                                    # a NaN step passes
            return 1
        m = zexpm1(step)                                         # (1 + x) e^step - 1 = x m + (m + x)
        new_x = fmax(x * m + (m + x), LOWEST_RATE)               # a NaN becomes the lowest rate
        if abs(x) < SNAP_LIMIT and abs(new_x) < SNAP_LIMIT:
            problem.x = 0.0                                      # two tiny rates in a row: exactly 0, not counted
            break
        problem.x = new_x
        difference = abs(x - new_x)
        if is_nan(difference) or difference <= problem.tolerance * maximum(abs(new_x), 1.0):
            break
        if iteration < problem.max_iterations:
            iteration = iteration + 1
            continue
        iteration = iteration + 1
        break
    if iteration < problem.max_iterations:
        return 0
    # The limit was reached: the value at the rate before the last step must be negligible.
    if abs(problem.value) < RESIDUAL_UNIT * problem.residual_scale:
        return 0
    return 1
