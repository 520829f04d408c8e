# A picture in one command, without a camera and without a checkout's packages on the machine:
#   docker build -t kelcam . && docker run --rm -v "$PWD:/pictures" kelcam
FROM debian:12
COPY . /kelCameraVimba
WORKDIR /kelCameraVimba
# The script installs what the build needs, builds, and takes pictures with simulated cameras.
RUN script/demo
CMD ["sh", "-c", "cp build/demo/*.png /pictures && ls -l /pictures/*.png"]
